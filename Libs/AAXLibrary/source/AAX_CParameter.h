#pragma once
#include "Interfaces/AAX/AAX_IDisplayDelegate.h"
#include "Interfaces/AAX/AAX_IParameter.h"
#include "Interfaces/AAX/AAX_ITaperDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CString.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>

/**
 * A parameter with real values of type T, `float` or `bool`: between the plug-in's real values, the host's
 * normalized ones and the texts that a user sees stand two delegates, of which the parameter owns clones.
 */
template <typename T>
class AAX_CParameter : public AAX_IParameter
{
public:
    /**
     * The value is the default, the type continuous with 128 steps, also of a switch: an owner that wants
     * others sets them.
     * @param inIdentifier   its first 31 characters are kept.
     */
    AAX_CParameter(const char* inIdentifier, const AAX_CString& inName, T inDefaultValue,
                   const AAX_ITaperDelegate<T>& inTaperDelegate,
                   const AAX_IDisplayDelegate<T>& inDisplayDelegate, bool inAutomatable);
    AAX_CParameter(const AAX_CParameter&) = delete;
    AAX_CParameter& operator=(const AAX_CParameter&) = delete;
    ~AAX_CParameter() override;

    AAX_CParamID Identifier() const override;
    void SetName(const AAX_CString& inName) override;
    const AAX_CString& Name() const override;
    void AddShortenedName(const AAX_CString& inName) override;
    const AAX_CString& ShortenedName(std::int32_t inNumCharacters) const override;
    void ClearShortenedNames() override;

    bool Automatable() const override;
    void SetAutomationDelegate(AAX_IAutomationDelegate* inDelegate) override;
    void Touch() override;
    void Release() override;

    /** As the interface's requests, with a real value. */
    void SetValue(T inValue);
    void SetNormalizedValue(double inNormalizedValue) override;
    double GetNormalizedValue() const override;
    void SetNormalizedDefaultValue(double inNormalizedValue) override;
    double GetNormalizedDefaultValue() const override;
    void SetToDefaultValue() override;
    void SetNumberOfSteps(std::uint32_t inSteps) override;
    std::uint32_t GetNumberOfSteps() const override;
    std::uint32_t GetStepValue() const override;
    void SetStepValue(std::uint32_t inStep) override;

    bool GetValueString(AAX_CString* outText) const override;
    bool GetValueString(std::int32_t inMaxNumChars, AAX_CString* outText) const override;
    bool GetNormalizedValueFromString(const AAX_CString& inText, double* outNormalizedValue) const override;
    bool GetStringFromNormalizedValue(double inNormalizedValue, AAX_CString& outText) const override;
    bool GetStringFromNormalizedValue(double inNormalizedValue, std::int32_t inMaxNumChars,
                                      AAX_CString& outText) const override;
    bool SetValueFromString(const AAX_CString& inText) override;

    bool GetValueAsBool(bool* outValue) const override;
    bool GetValueAsInt32(std::int32_t* outValue) const override;
    bool GetValueAsFloat(float* outValue) const override;
    bool GetValueAsDouble(double* outValue) const override;
    bool GetValueAsString(AAX_IString* outValue) const override;
    bool SetValueWithBool(bool inValue) override;
    bool SetValueWithInt32(std::int32_t inValue) override;
    bool SetValueWithFloat(float inValue) override;
    bool SetValueWithDouble(double inValue) override;
    bool SetValueWithString(const AAX_IString& inValue) override;

    void SetType(AAX_EParameterType inType) override;
    AAX_EParameterType GetType() const override;
    void SetOrientation(std::int32_t inOrientation) override;
    std::int32_t GetOrientation() const override;
    void SetTaperDelegate(AAX_ITaperDelegateBase& inTaper, bool inPreserveValue) override;
    void SetDisplayDelegate(AAX_IDisplayDelegateBase& inDisplay) override;

    void UpdateNormalizedValue(double inNormalizedValue) override;

    static constexpr std::size_t kIdentifierCapacity = 32; // with the terminator
    static constexpr std::uint32_t kInitialSteps = 128;

private:
    /** Asks the host for the value, or takes it at once where there is no host. */
    void RequestNormalizedValue(double inNormalizedValue);
    bool IsInRange(T inValue) const;
    template <typename U>
    bool GetValueAs(U* outValue) const;
    template <typename U>
    bool SetValueWith(U inValue);

    std::array<char, kIdentifierCapacity> mIdentifier{};
    AAX_CString mName;
    std::map<std::int32_t, AAX_CString> mShortenedNames; // by length
    bool mAutomatable = false;
    std::uint32_t mNumSteps = 0;
    AAX_EParameterType mType = AAX_eParameterType_Continuous;
    std::int32_t mOrientation = 0;
    std::unique_ptr<AAX_ITaperDelegate<T>> mTaperDelegate;
    std::unique_ptr<AAX_IDisplayDelegate<T>> mDisplayDelegate;
    AAX_IAutomationDelegate* mAutomationDelegate = nullptr;
    bool mNeedNotify = true; // the next update stores and reports even an unchanged value
    T mValue{};
    T mDefaultValue{};
};

extern template class AAX_CParameter<float>;
extern template class AAX_CParameter<bool>;
