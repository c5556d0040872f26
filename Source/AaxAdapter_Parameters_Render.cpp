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
double QuarterInBar(double inTempo, double inPosition, float inSampleRate) noexcept
{
    const double samplesPerBarAtOneBpm = static_cast<double>(inSampleRate * 240.0F);
    const double bars = inTempo * inPosition / samplesPerBarAtOneBpm;
    const double quarters = (bars - std::trunc(bars)) * 4.0;
    return std::isfinite(quarters) ? quarters : 0.0;
}
} // namespace

void AaxAdapter_Parameters::RenderAudio(AAX_SInstrumentRenderInfo* ioInfo)
{
    UpdateTimeInfo(*ioInfo);
    if (mPlugin == nullptr || ioInfo->mNumSamples == nullptr)
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

void AaxAdapter_Parameters::UpdateTimeInfo(const AAX_SInstrumentRenderInfo& inInfo) noexcept
{
    AAX_ITransport* const transport =
        inInfo.mTransportNode != nullptr ? inInfo.mTransportNode->GetTransport() : nullptr;
    double tempo = mTempo;
    bool playing = false;
    std::int64_t location = 0;
    if (transport != nullptr)
    {
        if (transport->GetCurrentTempo(&tempo) == kAAX_Success)
            mTempo = tempo;
        if (transport->IsTransportPlaying(&playing) != kAAX_Success)
            playing = false;
        if (transport->GetCurrentNativeSampleLocation(&location) != kAAX_Success)
            location = 0;
    }
    VstTimeInfo& time = mVst2Host.TimeInfo();
    time.tempo = static_cast<double>(static_cast<float>(mTempo));
    time.samplePos = static_cast<double>(location);
    time.ppqPos = QuarterInBar(mTempo, time.samplePos, mSampleRate);
    time.sampleRate = static_cast<double>(mSampleRate);
    time.flags = playing ? kVstTransportPlaying : 0;
}

void AaxAdapter_Parameters::ForwardEvents(const AAX_SInstrumentRenderInfo& inInfo)
{
    const AAX_CMidiStream* const stream =
        mHasInputNode && inInfo.mInputNode != nullptr ? inInfo.mInputNode->GetNodeBuffer() : nullptr;
    const std::int64_t count = stream != nullptr && stream->mPackets != nullptr ? stream->mCount : 0;
    if (count > mEventCapacity)
    {
        mEventData = std::vector<unsigned long>(static_cast<std::size_t>(count));
        mEventTimes = std::vector<unsigned long>(static_cast<std::size_t>(count));
        mEventCapacity = count;
    }
    for (std::int64_t i = 0; i < count; ++i)
    {
        const auto event = static_cast<std::size_t>(i);
        mEventData[event] = PackedBytes(stream->mPackets[i]);
        mEventTimes[event] = stream->mPackets[i].mTimestamp;
    }
    std::int64_t first = 0;
    do
    {
        const std::int64_t part = std::min(count - first, kMaxEventsPerCall);
        mPlugin->ProcessEvents(part, mEventData.data() + first, mEventTimes.data() + first);
        first += part;
    } while (first < count);
}

void AaxAdapter_Parameters::RenderPlugin(AAX_SInstrumentRenderInfo& ioInfo)
{
    const AEffect& effect = *mPlugin->GetEffect();
    const std::int32_t frames = *ioInfo.mNumSamples;
    // A plug-in that has grown since it was opened would reach past every array; the extra buffers hold one
    // block.
    const bool hasGrown =
        effect.numInputs > mInputs.ChannelCount() || effect.numOutputs > mOutputs.ChannelCount();
    const bool needsBuffers = mInputs.IsNeeded() || mOutputs.IsNeeded();
    if (hasGrown || (needsBuffers && frames > kBlockSizeFrames))
    {
        SilenceOutputs(ioInfo);
        return;
    }
    if (!needsBuffers)
    {
        mPlugin->Process(ioInfo.mAudioInputs, ioInfo.mAudioOutputs, frames);
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
