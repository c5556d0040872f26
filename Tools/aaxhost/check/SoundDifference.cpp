#include "Tools/aaxhost/check/SoundDifference.h"

#include "Tools/aaxhost/check/Figures.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

std::optional<SSoundDifference> DifferenceOf(const Sound& inBefore, const Sound& inNow, float inTolerance)
{
    SSoundDifference difference;
    for (std::size_t channel = 0; channel < std::min(inBefore.size(), inNow.size()); ++channel)
    {
        const std::vector<float>& before = inBefore[channel];
        const std::vector<float>& now = inNow[channel];
        const std::size_t frames = std::min(before.size(), now.size());
        difference.mAll += frames;
        for (std::size_t i = 0; i < frames; ++i)
        {
            const float distance = std::abs(before[i] - now[i]);
            const bool isSame = distance <= inTolerance || before[i] == now[i] || // infinite, too
                                (std::isnan(before[i]) && std::isnan(now[i]));
            if (isSame)
                continue;
            if (difference.mSamples++ == 0)
            {
                difference.mChannel = channel;
                difference.mFrame = i;
                difference.mBefore = before[i];
                difference.mNow = now[i];
            }
            if (std::isfinite(distance))
                difference.mLargest = std::max(difference.mLargest, static_cast<double>(distance));
        }
    }
    return difference.mSamples > 0 ? std::optional(difference) : std::nullopt;
}

std::string InWords(const SSoundDifference& inDifference)
{
    const std::string most =
        inDifference.mLargest > 0.0 ? ", by up to " + InDecibels(inDifference.mLargest) : "";
    return fmt::format("output {} is {:.5f} at frame {} where it was {:.5f}; {} of {} samples differ{}",
                       inDifference.mChannel + 1, inDifference.mNow, inDifference.mFrame,
                       inDifference.mBefore, inDifference.mSamples, inDifference.mAll, most);
}
