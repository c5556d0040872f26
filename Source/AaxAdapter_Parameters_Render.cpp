#include "Interfaces/AAX/AAX_IMIDINode.h"
#include "Interfaces/AAX/AAX_ITransport.h"
#include "Source/AaxAdapter_Parameters.h"
#include "Source/plugins/CVst2Plugin.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

namespace
{
/** What a plug-in is given at once; more packets go in further calls. */
constexpr std::int64_t kMaxEventsPerCall = 300;

/** The MIDI bytes and what follows them, as one number whose lowest byte is the status byte. */
unsigned long PackedBytes(const AAX_CMidiPacket& inPacket) noexcept
{
    static_assert(sizeof(unsigned long) == 8);
    unsigned long bytes = 0;
    std::memcpy(&bytes, reinterpret_cast<const char*>(&inPacket) + offsetof(AAX_CMidiPacket, mData),
                sizeof(bytes));
    return bytes;
}

/** Quarter notes since the start of a 4/4 bar, 0 up to 4; 0 where the host's numbers give no position. */
double QuarterInBar(double inTempo, double inPosition, double inSamplesPerBarAtOneBpm) noexcept
{
    // From here on a double has no fraction; a rate of 0 gives infinity or no number.
    constexpr double kNoFraction = 4503599627370496.0; // 2^52
    const double bars = inTempo * inPosition / inSamplesPerBarAtOneBpm;
    if (!(std::abs(bars) < kNoFraction)) [[unlikely]]
        return 0.0;
    return (bars - static_cast<double>(static_cast<std::int64_t>(bars))) * 4.0;
}

/** The upper half of a double's bits: the larger, the larger the value, and for one that is negative,
 * infinite or no number beyond those of all others. */
constexpr std::uint32_t UpperHalf(double inValue) noexcept
{
    return static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(inValue) >> 32);
}

/** Beats per minute that a plug-in can count on; it gets them in single precision. */
bool IsTempo(double inTempo) noexcept
{
    constexpr std::uint32_t kLowest = UpperHalf(static_cast<double>(std::numeric_limits<float>::min()));
    constexpr std::uint32_t kHighest = UpperHalf(static_cast<double>(std::numeric_limits<float>::max()));
    return UpperHalf(inTempo) - kLowest <= kHighest - kLowest;
}
} // namespace

// The steps of a block are defined inline, ahead of the call that makes them: most blocks bring no packet,
// and going from one small function to the next would cost as much as what they do.

inline void AaxAdapter_Parameters::UpdateTimeInfo(const AAX_SInstrumentRenderInfo& inInfo) noexcept
{
    AAX_ITransport* const transport =
        inInfo.mTransportNode != nullptr ? inInfo.mTransportNode->GetTransport() : nullptr;
    bool playing = false;
    std::int64_t location = 0;
    if (transport != nullptr) [[likely]]
    {
        if (transport->GetCurrentTempo(&mTempo) != kAAX_Success || !IsTempo(mTempo)) [[unlikely]]
            mTempo = mLastTempo;
        if (transport->IsTransportPlaying(&playing) != kAAX_Success) [[unlikely]]
            playing = false;
        if (transport->GetCurrentNativeSampleLocation(&location) != kAAX_Success) [[unlikely]]
            location = 0;
        mLastTempo = mTempo;
    }
    VstTimeInfo& time = mVst2Host.TimeInfo();
    time.tempo = static_cast<double>(static_cast<float>(mTempo));
    time.samplePos = static_cast<double>(location);
    time.ppqPos = QuarterInBar(mTempo, time.samplePos, mSamplesPerBarAtOneBpm);
    time.sampleRate = mTimeInfoRate;
    time.flags = playing ? kVstTransportPlaying : 0;
}

inline std::span<const AAX_CMidiPacket> AaxAdapter_Parameters::PacketsOf(
    const AAX_SInstrumentRenderInfo& inInfo) const
{
    const AAX_CMidiStream* const stream =
        mHasInputNode && inInfo.mInputNode != nullptr ? inInfo.mInputNode->GetNodeBuffer() : nullptr;
    if (stream == nullptr || stream->mCount == 0 || stream->mPackets == nullptr) [[likely]]
        return {};
    return {stream->mPackets, stream->mCount};
}

inline void AaxAdapter_Parameters::ForwardEvents(const AAX_SInstrumentRenderInfo& inInfo)
{
    const std::span<const AAX_CMidiPacket> packets = PacketsOf(inInfo);
    if (packets.empty()) [[likely]]
        mPlugin->ProcessEvents(0, mEventData.data(), mEventTimes.data());
    else
        ForwardPackets(std::ssize(packets), packets.data());
}

void AaxAdapter_Parameters::ForwardPackets(std::int64_t inCount, const AAX_CMidiPacket* inPackets)
{
    if (inCount > mEventsAtOnce) [[unlikely]]
        return ForwardPacketsOf({0, INT32_MAX}, true, {inPackets, static_cast<std::size_t>(inCount)});
    unsigned long* const data = mEventData.data();
    unsigned long* const times = mEventTimes.data();
    for (std::int64_t i = 0; i < inCount; ++i)
    {
        data[i] = PackedBytes(inPackets[i]);
        times[i] = inPackets[i].mTimestamp;
    }
    mPlugin->ProcessEvents(inCount, data, times);
}

void AaxAdapter_Parameters::ForwardPacketsOf(SFrames inFrames, bool inIsLast,
                                             std::span<const AAX_CMidiPacket> inPackets)
{
    if (std::ssize(inPackets) > mEventCapacity)
        GrowEventArrays(std::ssize(inPackets));
    const auto first = static_cast<std::uint32_t>(inFrames.mFirst);
    const std::uint32_t end = first + static_cast<std::uint32_t>(inFrames.mCount);
    std::size_t count = 0;
    for (const AAX_CMidiPacket& packet : inPackets)
    {
        if (packet.mTimestamp < first || (packet.mTimestamp >= end && !inIsLast))
            continue;
        mEventData[count] = PackedBytes(packet);
        mEventTimes[count++] = packet.mTimestamp - first;
    }
    if (count == 0)
        mPlugin->ProcessEvents(0, mEventData.data(), mEventTimes.data());
    for (std::size_t i = 0; i < count; i += kMaxEventsPerCall)
        mPlugin->ProcessEvents(std::min<long>(static_cast<long>(count - i), kMaxEventsPerCall),
                               mEventData.data() + i, mEventTimes.data() + i);
}

void AaxAdapter_Parameters::GrowEventArrays(std::int64_t inCount)
{
    mEventData = std::vector<unsigned long>(static_cast<std::size_t>(inCount));
    mEventTimes = std::vector<unsigned long>(static_cast<std::size_t>(inCount));
    mEventCapacity = inCount;
    mEventsAtOnce = std::min(inCount, kMaxEventsPerCall);
}

inline void AaxAdapter_Parameters::RenderPlugin(AAX_SInstrumentRenderInfo& ioInfo)
{
    const AEffect& effect = *mPlugin->GetEffect();
    const bool hostArraysFit =
        effect.numInputs <= mInputs.HostChannelCount() && effect.numOutputs == mDirectOutputs;
    if (!hostArraysFit) [[unlikely]]
        RenderFitted(ioInfo, {0, *ioInfo.mNumSamples});
    else
        mPlugin->Process(ioInfo.mAudioInputs, ioInfo.mAudioOutputs, *ioInfo.mNumSamples);
}

void AaxAdapter_Parameters::RenderFitted(AAX_SInstrumentRenderInfo& ioInfo, SFrames inFrames)
{
    const AEffect& effect = *mPlugin->GetEffect();
    // One that has grown since it was opened would reach past every array.
    const bool hasGrown =
        effect.numInputs > mInputs.ChannelCount() || effect.numOutputs > mOutputs.ChannelCount();
    const bool canRender = !hasGrown && effect.processReplacing != nullptr;
    if (canRender)
    {
        // Again in every block: a plug-in may have written into its inputs.
        mInputs.Silence(inFrames.mCount);
        mPlugin->Process(mInputs.Extend(ioInfo.mAudioInputs, inFrames.mFirst),
                         mOutputs.Extend(ioInfo.mAudioOutputs, inFrames.mFirst), inFrames.mCount);
    }
    // Afterwards: the host may have it work in place.
    SilenceOutputs(ioInfo, canRender ? std::max(effect.numOutputs, 0) : 0, inFrames);
}

void AaxAdapter_Parameters::RenderInParts(AAX_SInstrumentRenderInfo& ioInfo)
{
    VstTimeInfo& time = mVst2Host.TimeInfo();
    const std::int32_t frames = *ioInfo.mNumSamples;
    const std::span<const AAX_CMidiPacket> packets = PacketsOf(ioInfo);
    for (std::int32_t first = 0; first < frames; first += kBlockSizeFrames)
    {
        const SFrames part{first, std::min(frames - first, kBlockSizeFrames)};
        ForwardPacketsOf(part, part.mCount == frames - first, packets);
        RenderFitted(ioInfo, part);
        if ((time.flags & kVstTransportPlaying) != 0)
        {
            time.samplePos += part.mCount;
            time.ppqPos = QuarterInBar(mTempo, time.samplePos, mSamplesPerBarAtOneBpm);
        }
        if (frames - first <= kBlockSizeFrames)
            return; // ahead of a sum that no integer holds
    }
}

void AaxAdapter_Parameters::SilenceOutputs(const AAX_SInstrumentRenderInfo& ioInfo, long inFirstChannel,
                                           SFrames inFrames) const noexcept
{
    for (long channel = inFirstChannel; channel < mHostOutputChannels; ++channel)
        std::fill_n(ioInfo.mAudioOutputs[channel] + inFrames.mFirst, inFrames.mCount, 0.0F);
}

void AaxAdapter_Parameters::RenderAudio(AAX_SInstrumentRenderInfo* ioInfo)
{
    UpdateTimeInfo(*ioInfo);
    if (mPlugin == nullptr || ioInfo->mNumSamples == nullptr) [[unlikely]]
        return;
    const bool isWhole = static_cast<std::uint32_t>(*ioInfo->mNumSamples) <= kBlockSizeFrames;
    try
    {
        if (!isWhole) [[unlikely]]
            return RenderInParts(*ioInfo); // of a negative number there are none
        ForwardEvents(*ioInfo);
        RenderPlugin(*ioInfo);
    }
    catch (...)
    {
        SilenceOutputs(*ioInfo, 0, {0, std::max(*ioInfo->mNumSamples, 0)});
    }
}
