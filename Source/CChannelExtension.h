#pragma once
#include <cstdint>
#include <vector>

/**
 * One direction's channel array where the host's own does not serve as it is, because the plug-in has more
 * channels or renders a part of a block: the host's buffers first, uncopied, then buffers of this object.
 *
 * Threads: `Prepare` before rendering; everything else on the render thread, where nothing is allocated.
 */
class CChannelExtension
{
public:
    /**
     * @param inHostChannels    channels in the host's array
     * @param inPluginChannels  channels that the plug-in reads or writes; negative counts as 0
     * @param inMaxFrames       largest block of the extra buffers
     */
    void Prepare(long inHostChannels, long inPluginChannels, std::int32_t inMaxFrames);

    long HostChannelCount() const noexcept { return mHostChannels; }
    /** How many channels the array that the plug-in gets has. */
    long ChannelCount() const noexcept { return mChannelCount; }

    /**
     * @param inFirstFrame   where the part to be rendered begins in the host's buffers
     * @return an array of ChannelCount() buffers, valid until the next call.
     */
    float** Extend(float* const* inHostChannels, std::int32_t inFirstFrame) noexcept;
    /** Clears the first `inFrames` frames of the extra buffers. */
    void Silence(std::int32_t inFrames) noexcept;

private:
    long mHostChannels = 0;
    long mChannelCount = 0;
    std::vector<float*> mChannels;
    std::vector<std::vector<float>> mExtra;
};
