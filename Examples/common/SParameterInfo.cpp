#include "Examples/common/SParameterInfo.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

double SParameterInfo::ToPlain(double inNormalized) const noexcept
{
    return mScale == EParameterScale::kExponential ? mMinimum * std::pow(mMaximum / mMinimum, inNormalized)
                                                   : mMinimum + inNormalized * (mMaximum - mMinimum);
}

double SParameterInfo::ToNormalized(double inPlain) const noexcept
{
    const double plain = std::clamp(inPlain, mMinimum, mMaximum);
    return mScale == EParameterScale::kExponential
               ? std::log(plain / mMinimum) / std::log(mMaximum / mMinimum)
               : (plain - mMinimum) / (mMaximum - mMinimum);
}

void SParameterInfo::Format(double inNormalized, std::span<char> outText) const noexcept
{
    // A text that doesn't fit is cut; the range of the table keeps that from happening.
    (void)std::snprintf(outText.data(), outText.size(), "%.*f", mDecimals, ToPlain(inNormalized));
}
