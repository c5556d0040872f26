#pragma once
#include "Interfaces/AAX/AAX_IMIDINode.h"
#include "Interfaces/AAX/AAX_ITransport.h"
#include "Source/AaxAdapter_Parameters.h"
#include "Source/plugins/CVst2Plugin.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

// The steps of a block that every block takes, for those who render one. They are defined inline: most blocks
// bring no packet, and going from one small function to the next would cost as much as what they do.

/** Quarter notes since the start of a 4/4 bar, 0 up to 4; 0 where the host's numbers give no position. */
inline double QuarterInBar(double inTempo, double inPosition, double inSamplesPerBarAtOneBpm) noexcept
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
inline bool IsTempo(double inTempo) noexcept
{
    constexpr std::uint32_t kLowest = UpperHalf(static_cast<double>(std::numeric_limits<float>::min()));
    constexpr std::uint32_t kHighest = UpperHalf(static_cast<double>(std::numeric_limits<float>::max()));
    return UpperHalf(inTempo) - kLowest <= kHighest - kLowest;
}

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

inline void AaxAdapter_Parameters::ForwardEvents(std::span<const AAX_CMidiPacket> inPackets)
{
    if (inPackets.empty()) [[likely]]
        mPlugin->ProcessEvents(0, mEventData.data(), mEventTimes.data());
    else
        ForwardPackets(std::ssize(inPackets), inPackets.data());
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
