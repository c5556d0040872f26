#pragma once
#include <cstdint>
#include <vector>

/** What a plug-in whose main port is stereo has for its second channel. */
enum class ESecondChannel
{
    kHosts,  // the host's second
    kSame,   // the host's first: a mono input for both
    kUnheard // nobody's: a mono output is the first alone
};

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
     * @param inSecond          what the plug-in's second channel is. Unless it is the host's, the host's
     * second channel becomes the plug-in's third, and so on.
     */
    void Prepare(long inHostChannels, long inPluginChannels, std::int32_t inMaxFrames,
                 ESecondChannel inSecond = ESecondChannel::kHosts);

    long HostChannelCount() const noexcept { return mHostChannels; }
    /** How many channels the array that the plug-in gets has. */
    long ChannelCount() const noexcept { return mChannelCount; }
    /** How many of the host's channels a plug-in with so many writes. */
    long HostChannelsOf(long inPluginChannels) const noexcept
    {
        return inPluginChannels > mInserted ? inPluginChannels - mInserted : inPluginChannels;
    }

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
    long mInserted = 0; // behind the host's first channel
    ESecondChannel mSecond = ESecondChannel::kHosts;
    std::vector<float*> mChannels;
    std::vector<std::vector<float>> mExtra;
};
