#include "Examples/common/SParameterInfo.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

double SParameterInfo::ToPlain(double inNormalized) const noexcept
{
    return scale == EParameterScale::kExponential ? minimum * std::pow(maximum / minimum, inNormalized)
                                                  : minimum + inNormalized * (maximum - minimum);
}

double SParameterInfo::ToNormalized(double inPlain) const noexcept
{
    const double plain = std::clamp(inPlain, minimum, maximum);
    return scale == EParameterScale::kExponential ? std::log(plain / minimum) / std::log(maximum / minimum)
                                                  : (plain - minimum) / (maximum - minimum);
}

void SParameterInfo::Format(double inNormalized, std::span<char> outText) const noexcept
{
    // A text that doesn't fit is cut; the range of the table keeps that from happening.
    (void)std::snprintf(outText.data(), outText.size(), "%.*f", decimals, ToPlain(inNormalized));
}
