#include "Source/CChannelExtension.h"

#include <algorithm>

void CChannelExtension::Prepare(long inHostChannels, long inPluginChannels, std::int32_t inMaxFrames,
                                ESecondChannel inSecond)
{
    mHostChannels = std::max(inHostChannels, 0L);
    mSecond = mHostChannels > 0 ? inSecond : ESecondChannel::kHosts;
    mInserted = mSecond == ESecondChannel::kHosts ? 0 : 1;
    mChannelCount = std::max(mHostChannels + mInserted, inPluginChannels);
    const long shared = mSecond == ESecondChannel::kSame ? 1 : 0;
    mExtra.assign(static_cast<std::size_t>(mChannelCount - mHostChannels - shared),
                  std::vector<float>(static_cast<std::size_t>(inMaxFrames)));
    mChannels.assign(static_cast<std::size_t>(mChannelCount), nullptr);
    auto extra = mExtra.begin();
    if (mSecond == ESecondChannel::kUnheard)
        mChannels[1] = (extra++)->data();
    std::transform(extra, mExtra.end(), mChannels.begin() + mHostChannels + mInserted,
                   [](auto& ioBuffer) { return ioBuffer.data(); });
}

float** CChannelExtension::Extend(float* const* inHostChannels, std::int32_t inFirstFrame) noexcept
{
    const auto further = [=](float* inBuffer) { return inBuffer + inFirstFrame; };
    const long first = std::min(mHostChannels, 1L);
    std::transform(inHostChannels, inHostChannels + first, mChannels.begin(), further);
    if (mSecond == ESecondChannel::kSame)
        mChannels[1] = mChannels[0];
    std::transform(inHostChannels + first, inHostChannels + mHostChannels,
                   mChannels.begin() + first + mInserted, further);
    return mChannels.data();
}

void CChannelExtension::Silence(std::int32_t inFrames) noexcept
{
    for (std::vector<float>& buffer : mExtra)
        std::fill_n(buffer.begin(), inFrames, 0.0F);
}
