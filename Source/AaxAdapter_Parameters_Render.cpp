#include "Interfaces/AAX/AAX_IMIDINode.h"
#include "Interfaces/AAX/AAX_ITransport.h"
#include "Source/AaxAdapter_Parameters.h"
#include "Source/plugins/CVst2Plugin.h"

#include <algorithm>
#include <cmath>
#include <cstring>

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
} // namespace

// The steps of a block are defined inline, ahead of the call that makes them: most blocks bring no packet,
// and going from one small function to the next would cost as much as what they do.

inline void AaxAdapter_Parameters::UpdateTimeInfo(const AAX_SInstrumentRenderInfo& inInfo) noexcept
{
    AAX_ITransport* const transport =
        inInfo.mTransportNode != nullptr ? inInfo.mTransportNode->GetTransport() : nullptr;
    double tempo = mTempo;
    bool playing = false;
    std::int64_t location = 0;
    if (transport != nullptr) [[likely]]
    {
        if (transport->GetCurrentTempo(&tempo) != kAAX_Success) [[unlikely]]
            tempo = mTempo;
        if (transport->IsTransportPlaying(&playing) != kAAX_Success) [[unlikely]]
            playing = false;
        if (transport->GetCurrentNativeSampleLocation(&location) != kAAX_Success) [[unlikely]]
            location = 0;
        mTempo = tempo;
    }
    VstTimeInfo& time = mVst2Host.TimeInfo();
    time.tempo = static_cast<double>(static_cast<float>(tempo));
    time.samplePos = static_cast<double>(location);
    time.ppqPos = QuarterInBar(tempo, time.samplePos, mSamplesPerBarAtOneBpm);
    time.sampleRate = static_cast<double>(mSampleRate);
    time.flags = playing ? kVstTransportPlaying : 0;
}

inline void AaxAdapter_Parameters::ForwardEvents(const AAX_SInstrumentRenderInfo& inInfo)
{
    const AAX_CMidiStream* const stream =
        mHasInputNode && inInfo.mInputNode != nullptr ? inInfo.mInputNode->GetNodeBuffer() : nullptr;
    if (stream == nullptr || stream->mCount == 0 || stream->mPackets == nullptr) [[likely]]
    {
        mPlugin->ProcessEvents(0, mEventData.data(), mEventTimes.data());
        return;
    }
    const std::int64_t count = stream->mCount;
    if (count > mEventCapacity) [[unlikely]]
        GrowEventArrays(count);
    unsigned long* const data = mEventData.data();
    unsigned long* const times = mEventTimes.data();
    for (std::int64_t i = 0; i < count; ++i)
    {
        data[i] = PackedBytes(stream->mPackets[i]);
        times[i] = stream->mPackets[i].mTimestamp;
    }
    if (count > kMaxEventsPerCall) [[unlikely]]
        ForwardInParts(count);
    else
        mPlugin->ProcessEvents(count, data, times);
}

void AaxAdapter_Parameters::ForwardInParts(std::int64_t inCount)
{
    for (std::int64_t first = 0; first < inCount; first += kMaxEventsPerCall)
        mPlugin->ProcessEvents(std::min(inCount - first, kMaxEventsPerCall), mEventData.data() + first,
                               mEventTimes.data() + first);
}

void AaxAdapter_Parameters::GrowEventArrays(std::int64_t inCount)
{
    mEventData = std::vector<unsigned long>(static_cast<std::size_t>(inCount));
    mEventTimes = std::vector<unsigned long>(static_cast<std::size_t>(inCount));
    mEventCapacity = inCount;
}

inline void AaxAdapter_Parameters::RenderPlugin(AAX_SInstrumentRenderInfo& ioInfo)
{
    const AEffect& effect = *mPlugin->GetEffect();
    const bool hostArraysSuffice =
        effect.numInputs <= mInputs.HostChannelCount() && effect.numOutputs <= mOutputs.HostChannelCount();
    if (!hostArraysSuffice) [[unlikely]]
        RenderExtended(ioInfo);
    else
        mPlugin->Process(ioInfo.mAudioInputs, ioInfo.mAudioOutputs, *ioInfo.mNumSamples);
}

void AaxAdapter_Parameters::RenderExtended(AAX_SInstrumentRenderInfo& ioInfo)
{
    const AEffect& effect = *mPlugin->GetEffect();
    const std::int32_t frames = *ioInfo.mNumSamples;
    const bool hasGrown =
        effect.numInputs > mInputs.ChannelCount() || effect.numOutputs > mOutputs.ChannelCount();
    // A plug-in that has grown since it was opened would reach past every array; the extra buffers hold one
    // block.
    if (hasGrown || frames > kBlockSizeFrames)
    {
        SilenceOutputs(ioInfo);
        return;
    }
    // Again in every block: a plug-in may have written into its inputs.
    mInputs.Silence(frames);
    mPlugin->Process(mInputs.IsNeeded() ? mInputs.Extend(ioInfo.mAudioInputs) : ioInfo.mAudioInputs,
                     mOutputs.IsNeeded() ? mOutputs.Extend(ioInfo.mAudioOutputs) : ioInfo.mAudioOutputs,
                     frames);
}

void AaxAdapter_Parameters::SilenceOutputs(const AAX_SInstrumentRenderInfo& ioInfo) const noexcept
{
    for (long channel = 0; channel < mHostOutputChannels; ++channel)
        std::fill_n(ioInfo.mAudioOutputs[channel], std::max(*ioInfo.mNumSamples, 0), 0.0F);
}

void AaxAdapter_Parameters::RenderAudio(AAX_SInstrumentRenderInfo* ioInfo)
{
    UpdateTimeInfo(*ioInfo);
    if (mPlugin == nullptr || ioInfo->mNumSamples == nullptr) [[unlikely]]
        return;
    try
    {
        ForwardEvents(*ioInfo);
        RenderPlugin(*ioInfo);
    }
    catch (...)
    {
        SilenceOutputs(*ioInfo);
    }
}
