#include "Interfaces/AAX/AAX_IAutomationDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CBinaryDisplayDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CBinaryTaperDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CLinearTaperDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CNumberDisplayDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CParameter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace
{
using Taper = AAX_CLinearTaperDelegate<float, 0>;
using Display = AAX_CNumberDisplayDelegate<float, 2, 0>;
using BoolTaper = AAX_CBinaryTaperDelegate<bool>;
using BoolDisplay = AAX_CBinaryDisplayDelegate<bool>;
using Lines = std::vector<std::string>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/** Logs every call; refuses all of them, which a parameter has to survive. */
class CRecordingAutomation : public AAX_IAutomationDelegate
{
public:
    AAX_Result RegisterParameter(AAX_CParamID inId) override { return Log("register", inId); }
    AAX_Result UnregisterParameter(AAX_CParamID inId) override { return Log("unregister", inId); }
    AAX_Result PostSetValueRequest(AAX_CParamID inId, double inValue) const override
    {
        return Log("set", inId, inValue);
    }
    AAX_Result PostCurrentValue(AAX_CParamID inId, double inValue) const override
    {
        return Log("current", inId, inValue);
    }
    AAX_Result PostTouchRequest(AAX_CParamID inId) override { return Log("touch", inId); }
    AAX_Result PostReleaseRequest(AAX_CParamID inId) override { return Log("release", inId); }
    AAX_Result GetTouchState(AAX_CParamID, AAX_CBoolean*) override { return kAAX_ErrorUnsupported; }

    Lines Take() { return std::exchange(mLines, {}); }

private:
    AAX_Result Log(const char* inCall, AAX_CParamID inId, double inValue = -1) const
    {
        AAX_CString line(inCall);
        line.Append(" ").Append(inId);
        if (inValue >= 0)
            line.Append(" ").AppendNumber(inValue, 3);
        mLines.emplace_back(line.Get());
        return kAAX_ErrorNullObject;
    }
    mutable Lines mLines;
};

AAX_CParameter<float> MakeFloat(float inMin = 0, float inMax = 1, float inDefault = 0.25F)
{
    return {"g", "Gain in words", inDefault, Taper(inMin, inMax), Display(), true};
}

float ValueOf(const AAX_IParameter& inParameter)
{
    float value = -1000;
    EXPECT_TRUE(inParameter.GetValueAsFloat(&value));
    return value;
}

TEST(AaxParameter, LongIdentifierIsCutAndNullIsEmpty)
{
    const std::string id(40, 'x');
    const AAX_CParameter<bool> cut(id.c_str(), "n", true, BoolTaper(), BoolDisplay("off", "on"), true);
    EXPECT_EQ(cut.Identifier(), std::string(31, 'x'));
    const AAX_CParameter<bool> none(nullptr, "n", true, BoolTaper(), BoolDisplay("off", "on"), true);
    EXPECT_STREQ(none.Identifier(), "");
    EXPECT_EQ(none.GetNumberOfSteps(), 128U); // a switch too
    EXPECT_EQ(none.GetType(), AAX_eParameterType_Continuous);
    EXPECT_EQ(none.GetNormalizedValue(), 1.0);
}

TEST(AaxParameter, ShortenedNameFitsElseIsTheShortest)
{
    AAX_CParameter<float> parameter = MakeFloat();
    EXPECT_STREQ(parameter.ShortenedName(3).Get(), "Gain in words");
    for (const char* name : {"Gain....", "Old.", "Gain"})
        parameter.AddShortenedName(name);
    struct SRow
    {
        std::int32_t mLimit;
        const char* mName;
    };
    for (const SRow& row : {SRow{-1, "Gain"}, SRow{3, "Gain"}, SRow{4, "Gain"}, SRow{7, "Gain"},
                            SRow{8, "Gain...."}, SRow{12, "Gain...."}, SRow{13, "Gain in words"}})
    {
        SCOPED_TRACE(row.mLimit);
        EXPECT_STREQ(parameter.ShortenedName(row.mLimit).Get(), row.mName);
    }
    parameter.ClearShortenedNames();
    EXPECT_STREQ(parameter.ShortenedName(4).Get(), "Gain in words");
}

TEST(AaxParameter, RequestsWaitForTheHostAndItsAnswerIsPostedOnce)
{
    CRecordingAutomation host;
    CRecordingAutomation other;
    {
        AAX_CParameter<float> parameter = MakeFloat(0, 2, 0.5F);
        parameter.SetAutomationDelegate(&host);
        EXPECT_EQ(host.Take(), Lines({"register g"}));
        const Lines request{"touch g", "set g 1.000", "release g"};
        parameter.SetValue(3.0F);
        EXPECT_EQ(host.Take(), request);
        parameter.SetNormalizedValue(7.5);
        EXPECT_EQ(host.Take(), request);
        parameter.SetStepValue(200);
        EXPECT_EQ(host.Take(), request);
        EXPECT_TRUE(parameter.SetValueFromString("2 and more"));
        EXPECT_EQ(host.Take(), request);
        EXPECT_FALSE(parameter.SetValueFromString("two"));
        EXPECT_EQ(host.Take(), Lines());
        parameter.SetToDefaultValue();
        EXPECT_EQ(host.Take(), Lines({"touch g", "set g 0.250", "release g"}));
        EXPECT_EQ(ValueOf(parameter), 0.5F); // nothing has been stored so far

        parameter.UpdateNormalizedValue(0.25); // unchanged
        EXPECT_EQ(host.Take(), Lines());
        parameter.UpdateNormalizedValue(1.5);
        parameter.UpdateNormalizedValue(1.0);
        EXPECT_EQ(host.Take(), Lines({"current g 1.500"})); // as received, stored clamped
        EXPECT_EQ(ValueOf(parameter), 2.0F);
        Display display;
        parameter.SetDisplayDelegate(display);
        EXPECT_EQ(host.Take(), Lines({"current g 1.000"}));

        parameter.SetAutomationDelegate(&other);
        EXPECT_EQ(host.Take(), Lines({"unregister g"}));
    }
    EXPECT_EQ(other.Take(), Lines({"register g", "unregister g"}));
}

TEST(AaxParameter, DetachedRequestsApplyAtOnce)
{
    AAX_CParameter<float> parameter = MakeFloat();
    parameter.Touch();
    parameter.SetNormalizedValue(0.75);
    EXPECT_EQ(ValueOf(parameter), 0.75F);
    parameter.SetNormalizedDefaultValue(0.5);
    EXPECT_EQ(ValueOf(parameter), 0.75F);
    EXPECT_EQ(parameter.GetNormalizedDefaultValue(), 0.5);
    parameter.SetToDefaultValue();
    EXPECT_EQ(ValueOf(parameter), 0.5F);
}

TEST(AaxParameter, StepsAreRoundedAndClamped)
{
    AAX_CParameter<float> parameter = MakeFloat(0, 1, 0.5F);
    EXPECT_EQ(parameter.GetStepValue(), 64U);
    parameter.SetStepValue(127);
    EXPECT_EQ(parameter.GetStepValue(), 127U);
    parameter.SetNumberOfSteps(55);
    parameter.SetStepValue(27);
    EXPECT_EQ(parameter.GetNormalizedValue(), 0.5);
    parameter.SetNumberOfSteps(0xFFFFFFFFU);
    parameter.SetStepValue(0xFFFFFFFFU);
    EXPECT_EQ(parameter.GetStepValue(), 0xFFFFFFFEU);
    for (const std::uint32_t steps : {0U, 1U})
    {
        SCOPED_TRACE(steps);
        parameter.SetNumberOfSteps(steps);
        parameter.SetStepValue(0);
        EXPECT_EQ(parameter.GetStepValue(), 0U);
        EXPECT_EQ(ValueOf(parameter), 1.0F);
    }
    AAX_CParameter<float> point = MakeFloat(2, 2, 2); // has no normalized value
    EXPECT_TRUE(std::isnan(point.GetNormalizedValue()));
    EXPECT_EQ(point.GetStepValue(), 0U);
    EXPECT_EQ(ValueOf(point), 2.0F);
}

TEST(AaxParameter, TextsAreConvertedAndOutOfRangeOnesAreRefusedButStored)
{
    AAX_CParameter<float> parameter = MakeFloat(0, 20, 12.5F);
    AAX_CString text;
    EXPECT_TRUE(parameter.GetValueString(3, &text));
    EXPECT_STREQ(text.Get(), "12.50"); // the limit is not for this one
    EXPECT_TRUE(parameter.GetStringFromNormalizedValue(0.625, 3, text));
    EXPECT_STREQ(text.Get(), "12");
    EXPECT_TRUE(parameter.GetStringFromNormalizedValue(7.0, text));
    EXPECT_STREQ(text.Get(), "20.00");
    EXPECT_FALSE(parameter.GetValueString(nullptr));

    double normalized = 0.125;
    EXPECT_FALSE(parameter.GetNormalizedValueFromString("abc", &normalized));
    EXPECT_EQ(normalized, 0.125);
    EXPECT_FALSE(parameter.GetNormalizedValueFromString("20.5", &normalized));
    EXPECT_EQ(normalized, 1.0);
    EXPECT_FALSE(parameter.GetNormalizedValueFromString("-1e300", &normalized)); // no float
    EXPECT_EQ(normalized, 0.0);
    EXPECT_TRUE(parameter.GetNormalizedValueFromString("5", &normalized));
    EXPECT_EQ(normalized, 0.25);
    EXPECT_FALSE(parameter.GetNormalizedValueFromString("5", nullptr));
}

TEST(AaxParameter, OnlyTheAccessorsOfItsOwnTypeWork)
{
    AAX_CParameter<float> number = MakeFloat();
    AAX_CParameter<bool> toggle("b", "b", false, BoolTaper(), BoolDisplay("off", "on"), true);
    bool flag = true;
    float real = 5;
    double wide = 5;
    std::int32_t integer = 5;
    AAX_CString text("5");
    EXPECT_FALSE(number.GetValueAsBool(&flag) || number.GetValueAsInt32(&integer) ||
                 number.GetValueAsDouble(&wide) || number.GetValueAsString(&text));
    EXPECT_FALSE(toggle.GetValueAsFloat(&real) || toggle.GetValueAsFloat(nullptr));
    EXPECT_TRUE(flag && real == 5 && wide == 5 && integer == 5 && text == "5");
    EXPECT_FALSE(number.SetValueWithBool(true) || number.SetValueWithInt32(1) ||
                 number.SetValueWithDouble(1) || number.SetValueWithString(text) ||
                 toggle.SetValueWithFloat(1));
    EXPECT_EQ(ValueOf(number), 0.25F);
    EXPECT_TRUE(toggle.GetValueAsBool(&flag));
    EXPECT_FALSE(flag);
    EXPECT_TRUE(toggle.SetValueWithBool(true) && toggle.GetValueAsBool(&flag));
    EXPECT_TRUE(flag);
    EXPECT_FALSE(toggle.GetValueAsBool(nullptr));
}

TEST(AaxParameter, NewTaperKeepsTheRealOrTheNormalizedValue)
{
    for (const bool preserve : {true, false})
    {
        SCOPED_TRACE(preserve);
        AAX_CParameter<float> parameter = MakeFloat(0, 1, 0.5F);
        CRecordingAutomation host;
        BoolTaper foreign;
        parameter.SetTaperDelegate(foreign, preserve);
        EXPECT_EQ(parameter.GetNormalizedValue(), 0.5);
        auto wider = std::make_unique<Taper>(0.0F, 2.0F);
        parameter.SetTaperDelegate(*wider, preserve);
        wider.reset(); // a clone is kept
        EXPECT_EQ(ValueOf(parameter), preserve ? 0.5F : 1.0F);
        parameter.SetAutomationDelegate(&host);
        Taper same(0.0F, 2.0F);
        (void)host.Take(); // the registration
        parameter.SetTaperDelegate(same, preserve);
        EXPECT_EQ(host.Take(), preserve ? Lines({"touch g", "set g 0.250", "release g"})
                                        : Lines({"current g 0.500"})); // though unchanged
        parameter.SetAutomationDelegate(nullptr);
    }
}

TEST(LinearTaper, ValuesAreClampedOnTheRealSide)
{
    const Taper taper(-2, 6);
    struct SRow
    {
        double mNormalized;
        float mReal;
    };
    for (const SRow& row : {SRow{0, -2}, SRow{0.25, 0}, SRow{1, 6}, SRow{1.7, 6}, SRow{-0.2, -2},
                            SRow{kNaN, -2}, SRow{kInfinity, 6}, SRow{-kInfinity, -2}, SRow{1e300, 6}})
    {
        SCOPED_TRACE(row.mNormalized);
        EXPECT_EQ(taper.NormalizedToReal(row.mNormalized), row.mReal);
    }
    EXPECT_EQ(taper.RealToNormalized(2), 0.5);
    EXPECT_EQ(taper.RealToNormalized(100), 1.0);
    EXPECT_EQ(taper.RealToNormalized(static_cast<float>(kNaN)), 0.0);
    EXPECT_TRUE(BoolTaper().NormalizedToReal(0.0001));
    EXPECT_FALSE(BoolTaper().NormalizedToReal(0.0) || BoolTaper().NormalizedToReal(kNaN));
}

TEST(LinearTaper, EachOperationIsRoundedOnEachProcessor)
{
    // 3 times this number is 1 when it is rounded and less when not: some processors can add without rounding
    // first.
    const volatile double third = 1.0 / 3.0;
    const std::unique_ptr<AAX_ITaperDelegate<float>> taper(Taper(-1, 2).Clone());
    EXPECT_EQ(taper->NormalizedToReal(third), 0.0F);
}

TEST(NumberDisplay, TextIsCutToTheLimitWithoutAPointAtItsEnd)
{
    struct SRow
    {
        float mValue;
        std::int32_t mLimit;
        const char* mText;
    };
    for (const SRow& row : {SRow{123.45F, 5, "123.4"}, SRow{123.45F, 4, "123"}, SRow{123.45F, 2, "12"},
                            SRow{1, 2, "1"}, SRow{0.25F, 10, "0.25"}, SRow{-1, 5, "-1.00"}, SRow{1, 0, ""},
                            SRow{1, -3, ""}, SRow{static_cast<float>(kInfinity), 2, "in"}})
    {
        SCOPED_TRACE(row.mText);
        AAX_CString text("old");
        EXPECT_TRUE(Display().ValueToString(row.mValue, row.mLimit, &text));
        EXPECT_STREQ(text.Get(), row.mText);
    }
    float value = 5;
    EXPECT_FALSE(Display().StringToValue("abc", &value));
    EXPECT_EQ(value, 0.0F);
}

TEST(BinaryDisplay, TextsAreExactAndTheLastFittingShortOneIsTaken)
{
    BoolDisplay display("bypass", "on");
    AAX_CString text;
    EXPECT_TRUE(display.ValueToString(false, 2, &text));
    EXPECT_STREQ(text.Get(), "bypass"); // no shorter one to take
    bool value = false;
    EXPECT_TRUE(display.StringToValue("on", &value) && value);
    EXPECT_FALSE(display.StringToValue("On", &value) || value);
    EXPECT_TRUE(display.StringToValue("bypass", &value) && !value);

    display.AddShorterTexts("byp", "on");
    display.AddShorterTexts("byps", "on");
    display.AddShorterTexts("b", "o");
    const std::unique_ptr<AAX_IDisplayDelegate<bool>> clone(display.Clone());
    for (const auto& [limit, expected] :
         {std::pair{6, "bypass"}, std::pair{5, "b"}, std::pair{1, "b"}, std::pair{0, "byp"}})
    {
        SCOPED_TRACE(limit);
        EXPECT_TRUE(clone->ValueToString(false, limit, &text));
        EXPECT_STREQ(text.Get(), expected);
    }
}
} // namespace
