#include "Source/AaxAdapter_Parameters_Steps.h"

#include <algorithm>
#include <cstring>

namespace
{
/** What a plug-in is given at once; more packets go in further calls. */
constexpr std::int64_t kMaxEventsPerCall = CVst2Plugin::kMaxEvents;

/** The MIDI bytes and what follows them, as one number whose lowest byte is the status byte. */
unsigned long PackedBytes(const AAX_CMidiPacket& inPacket) noexcept
{
    static_assert(sizeof(unsigned long) == 8);
    unsigned long bytes = 0;
    std::memcpy(&bytes, reinterpret_cast<const char*>(&inPacket) + offsetof(AAX_CMidiPacket, mData),
                sizeof(bytes));
    return bytes;
}
} // namespace

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
    SilenceOutputs(ioInfo, canRender ? mOutputs.HostChannelsOf(std::max(effect.numOutputs, 0)) : 0, inFrames);
}

void AaxAdapter_Parameters::RenderInParts(AAX_SInstrumentRenderInfo& ioInfo)
{
    const std::int32_t frames = *ioInfo.mNumSamples;
    const std::span<const AAX_CMidiPacket> packets = PacketsOf(ioInfo);
    for (std::int32_t first = 0; first < frames; first += kBlockSizeFrames)
    {
        const SFrames part{first, std::min(frames - first, kBlockSizeFrames)};
        ForwardPacketsOf(part, part.mCount == frames - first, packets);
        RenderFitted(ioInfo, part);
        AdvanceTimeInfo(part.mCount);
        if (frames - first <= kBlockSizeFrames)
            return; // ahead of a sum that no integer holds
    }
}

void AaxAdapter_Parameters::AdvanceTimeInfo(std::int32_t inFrames) noexcept
{
    VstTimeInfo& time = mVst2Host.TimeInfo();
    if ((time.flags & kVstTransportPlaying) == 0)
        return;
    time.samplePos += inFrames;
    time.ppqPos = QuarterInBar(mTempo, time.samplePos, mSamplesPerBarAtOneBpm);
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
        ForwardEvents(PacketsOf(*ioInfo));
        RenderPlugin(*ioInfo);
    }
    catch (...)
    {
        SilenceOutputs(*ioInfo, 0, {0, std::max(*ioInfo->mNumSamples, 0)});
    }
}
