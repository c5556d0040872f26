#pragma once
#include "Interfaces/AAX/AAX_IAutomationDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CBinaryDisplayDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CBinaryTaperDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CEffectParameters.h"
#include "Libs/AAXLibrary/source/AAX_CLinearTaperDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CNumberDisplayDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CParameter.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <utility>
#include <variant>

/** The calls whose results these are have no order. */
template <class... Results>
void ExpectEach(AAX_Result inExpected, Results... inResults)
{
    int call = 0;
    for (const AAX_Result result : {inResults...})
        EXPECT_EQ(result, inExpected) << "call " << call++;
}

using FloatParameter = AAX_CParameter<float>;
using BoolParameter = AAX_CParameter<bool>;

inline std::unique_ptr<FloatParameter> MakeFloat(const char* inId, float inDefault = 0.5F)
{
    return std::make_unique<FloatParameter>(inId, AAX_CString(inId), inDefault,
                                            AAX_CLinearTaperDelegate<float, 0>(0.0F, 1.0F),
                                            AAX_CNumberDisplayDelegate<float, 2, 0>(), true);
}

inline std::unique_ptr<BoolParameter> MakeBool(const char* inId, bool inDefault = false)
{
    return std::make_unique<BoolParameter>(inId, AAX_CString(inId), inDefault,
                                           AAX_CBinaryTaperDelegate<bool>(),
                                           AAX_CBinaryDisplayDelegate<bool>("off", "on"), true);
}

/** A parameter of a type that only its typed access knows; it takes values at once, without a host. */
class CTypedParameter final : public FloatParameter
{
public:
    using Value = std::variant<std::int32_t, double, AAX_CString, std::monostate>;
    CTypedParameter(const char* inId, Value inValue)
        : FloatParameter(inId, AAX_CString(inId), 0.5F, AAX_CLinearTaperDelegate<float, 0>(0.0F, 1.0F),
                         AAX_CNumberDisplayDelegate<float, 2, 0>(), true),
          mTyped(std::move(inValue))
    {
    }
    bool GetValueAsFloat(float*) const override { return false; }
    bool GetValueAsInt32(std::int32_t* outValue) const override { return Get(*outValue); }
    bool GetValueAsDouble(double* outValue) const override { return Get(*outValue); }
    bool GetValueAsString(AAX_IString* outValue) const override
    {
        AAX_CString text;
        const bool isText = Get(text);
        *outValue = text;
        return isText;
    }
    bool SetValueWithInt32(std::int32_t inValue) override { return mTyped = inValue, true; }
    bool SetValueWithDouble(double inValue) override { return mTyped = inValue, true; }
    bool SetValueWithString(const AAX_IString& inValue) override
    {
        return mTyped = AAX_CString(inValue), true;
    }

    Value mTyped;

private:
    template <class T>
    bool Get(T& outValue) const
    {
        if (const T* const value = std::get_if<T>(&mTyped))
            outValue = *value;
        return std::holds_alternative<T>(mTyped);
    }
};

/** An instance whose `EffectInit` is the test's. */
class CTestEffectParameters : public AAX_CEffectParameters
{
public:
    using Init = std::function<AAX_Result(CTestEffectParameters&)>;
    explicit CTestEffectParameters(Init inInit = {}) : mInit(std::move(inInit)) {}
    AAX_Result EffectInit() override { return mInit ? mInit(*this) : kAAX_Success; }
    /** Answers the parameter, which the manager owns. */
    template <class Parameter>
    Parameter* Add(std::unique_ptr<Parameter> inParameter)
    {
        Parameter* const parameter = inParameter.get();
        if (mParameterManager.AddParameter(parameter))
            (void)inParameter.release(); // the manager took it
        return parameter;
    }
    double ValueOf(AAX_CParamID inId) const
    {
        const AAX_IParameter* const parameter = mParameterManager.GetParameterByID(inId);
        return parameter != nullptr ? parameter->GetNormalizedValue() : -1.0;
    }
    AAX_CPacketDispatcher& Packets() { return mPacketDispatcher; }

private:
    Init mInit;
};
