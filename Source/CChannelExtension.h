#pragma once
#include <cstdint>
#include <vector>

/**
 * One direction's channel array for a plug-in that has more channels than the host gives: the host's own
 * buffers first, uncopied, then buffers of this object.
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

    /** False where the host's array is long enough to be handed on as it is. */
    bool IsNeeded() const noexcept { return !mExtra.empty(); }
    long HostChannelCount() const noexcept { return mHostChannels; }
    /** How many channels the array that the plug-in gets has. */
    long ChannelCount() const noexcept { return mChannelCount; }

    /** @return an array of ChannelCount() buffers, valid until the next call. */
    float** Extend(float* const* inHostChannels) noexcept;
    /** Clears the first `inFrames` frames of the extra buffers. */
    void Silence(std::int32_t inFrames) noexcept;

private:
    long mHostChannels = 0;
    long mChannelCount = 0;
    std::vector<float*> mChannels;
    std::vector<std::vector<float>> mExtra;
};
