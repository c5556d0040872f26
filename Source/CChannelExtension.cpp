#include "Source/CChannelExtension.h"

#include <algorithm>

void CChannelExtension::Prepare(long inHostChannels, long inPluginChannels, std::int32_t inMaxFrames)
{
    mHostChannels = std::max(inHostChannels, 0L);
    mChannelCount = std::max(mHostChannels, inPluginChannels);
    mExtra.assign(static_cast<std::size_t>(mChannelCount - mHostChannels),
                  std::vector<float>(static_cast<std::size_t>(inMaxFrames)));
    mChannels.assign(static_cast<std::size_t>(mChannelCount), nullptr);
    std::ranges::transform(mExtra, mChannels.begin() + mHostChannels,
                           [](auto& ioBuffer) { return ioBuffer.data(); });
}

float** CChannelExtension::Extend(float* const* inHostChannels, std::int32_t inFirstFrame) noexcept
{
    std::transform(inHostChannels, inHostChannels + mHostChannels, mChannels.begin(),
                   [=](float* inBuffer) { return inBuffer + inFirstFrame; });
    return mChannels.data();
}

void CChannelExtension::Silence(std::int32_t inFrames) noexcept
{
    for (std::vector<float>& buffer : mExtra)
        std::fill_n(buffer.begin(), inFrames, 0.0F);
}
