#pragma once
#include "Interfaces/AAX/AAX_ITaperDelegate.h"

#include <cstdint>
#include <limits>

/**
 * Maps 0 to 1 evenly onto a range of real numbers; what lies outside is clamped to it. A NaN counts as the
 * minimum. With a minimum that equals the maximum no real value has a normalized one: it is a NaN.
 */
template <typename T, std::int32_t RealPrecision>
class AAX_CLinearTaperDelegate : public AAX_ITaperDelegate<T>
{
    // Infinities and NaNs are ordinary results, and a division by zero and an overflow have them.
    static_assert(std::numeric_limits<T>::is_iec559 && std::numeric_limits<double>::is_iec559);
    static_assert(RealPrecision == 0, "real values are not rounded");

public:
    AAX_CLinearTaperDelegate(T inMinValue, T inMaxValue) : mMinValue(inMinValue), mMaxValue(inMaxValue) {}

    AAX_CLinearTaperDelegate* Clone() const override { return new AAX_CLinearTaperDelegate(*this); }
    T GetMaximumValue() const override { return mMaxValue; }
    T GetMinimumValue() const override { return mMinValue; }

    T ConstrainRealValue(T inValue) const override
    {
        if (inValue > mMaxValue)
            return mMaxValue;
        return inValue > mMinValue ? inValue : mMinValue;
    }

    T NormalizedToReal(double inNormalizedValue) const override
    {
        const double minimum = mMinValue;
        return ConstrainRealValue(static_cast<T>(Span() * inNormalizedValue + minimum));
    }

    double RealToNormalized(T inRealValue) const override
    {
        const double constrained = ConstrainRealValue(inRealValue);
        return (constrained - static_cast<double>(mMinValue)) / Span();
    }

private:
    double Span() const { return static_cast<double>(mMaxValue) - static_cast<double>(mMinValue); }

    T mMinValue{};
    T mMaxValue{};
};
