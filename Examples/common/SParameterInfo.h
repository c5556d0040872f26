#pragma once
#include <cstdint>
#include <span>

/** How a parameter's range is laid over 0 to 1. */
enum class EParameterScale : std::uint8_t
{
    kLinear,
    kExponential // equal steps are equal ratios; the range must be positive
};

/** What a plug-in says of one of its parameters; tables of these are constants. */
struct SParameterInfo
{
    const char* mName; // at most kVstMaxParamStrLen characters, like the unit and every value's text
    const char* mUnit;
    double mMinimum;
    double mMaximum;
    int mDecimals; // of the value's text
    EParameterScale mScale = EParameterScale::kLinear;

    /** @param inNormalized 0 to 1. @return the value in the parameter's unit. */
    double ToPlain(double inNormalized) const noexcept;
    /** @param inPlain in the parameter's unit; what lies outside the range becomes its end. */
    double ToNormalized(double inPlain) const noexcept;
    /** Writes the value's text without the unit, cut to the room there is, always terminated. */
    void Format(double inNormalized, std::span<char> outText) const noexcept;
};
