#include "Tools/aaxhost/check/ImpulseArrival.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

int SImpulseArrival::Nearest(int inReported) const noexcept
{
    return std::abs(mPeak - inReported) < std::abs(mBegin - inReported) ? mPeak : mBegin;
}

std::optional<SImpulseArrival> FindImpulse(std::span<const double> inResponse)
{
    const auto size = [](double sample) { return std::isfinite(sample) ? std::abs(sample) : 0.0; };
    const auto peak = std::ranges::max_element(inResponse, {}, size);
    constexpr double silent = 1e-5;
    if (peak == inResponse.end() || size(*peak) < silent)
        return std::nullopt;
    const auto begin =
        std::ranges::find_if(inResponse, [&](double sample) { return size(sample) > 0.001 * size(*peak); });
    return SImpulseArrival{static_cast<int>(begin - inResponse.begin()),
                           static_cast<int>(peak - inResponse.begin()), size(*peak)};
}
