#include "Tools/aaxhost/host/CHostTransport.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CInstanceHost.h"
#include "Tools/aaxhost/host/HostNames.h"

namespace
{
/** Stores an answer, unless the caller has no use for it. */
template <class T, class Value>
void Answer(T* out, Value inValue) noexcept
{
    if (out != nullptr)
        *out = static_cast<T>(inValue);
}
} // namespace

CHostTransport::CHostTransport(CHostLog& inLog, CInstanceHost* inOwner) : mLog(inLog), mOwner(inOwner) {}

ACFRESULT CHostTransport::QueryInterface(const acfIID& iid, void** out)
{
    if (mOwner != nullptr)
        return mOwner->QueryInterface(iid, out);
    if (out == nullptr)
        return ACF_E_POINTER;
    *out = nullptr;
    if (const ACFRESULT fault = mLog.Record("QueryInterface", NameOfUid(iid)))
        return fault;
    const bool known = iid == IID_IACFUnknown || iid == IID_IAAXTransportV1 || iid == IID_IAAXTransportV2;
    if (!known || !mLog.Offers(iid))
        return ACF_E_NOINTERFACE;
    *out = static_cast<AAX_IACFTransport_V2*>(this);
    return ACF_OK;
}

acfUInt32 CHostTransport::AddRef() { return mOwner != nullptr ? mOwner->AddRef() : 1; }

acfUInt32 CHostTransport::Release() { return mOwner != nullptr ? mOwner->Release() : 1; }

AAX_Result CHostTransport::Begin(const char* inName) const noexcept
{
    const AAX_Result fault = mLog.RecordRender(inName);
    return fault != kAAX_Success ? fault : mResult;
}

std::int64_t CHostTransport::TicksAt(std::int64_t inSampleLocation) const noexcept
{
    const double seconds = static_cast<double>(inSampleLocation) / mState.mSampleRate;
    const double quarters =
        mState.mTimeline ? mState.mTimeline->QuartersAt(seconds) : seconds * mState.mTempo / 60.0;
    return CTimeline::TicksOf(quarters) + mState.mTickOffset;
}

CTimeline::SMeterStretch CHostTransport::MeterAt(std::int64_t inTick) const noexcept
{
    if (mState.mTimeline)
        return mState.mTimeline->MeterAt(inTick);
    return {0, 1, {mState.mMeterNumerator, mState.mMeterDenominator}};
}

AAX_Result CHostTransport::GetCurrentTempo(double* beatsPerMinute) const
{
    if (const AAX_Result fault = Begin("GetCurrentTempo"))
        return fault;
    const double samples =
        static_cast<double>(mState.mSamplePosition) + 0.5; // the nearest one, as an event does
    Answer(beatsPerMinute, mState.mTimeline
                               ? mState.mTimeline->TempoAt(samples / mState.mSampleRate).mBeatsPerMinute
                               : mState.mTempo);
    return kAAX_Success;
}

AAX_Result CHostTransport::GetCurrentMeter(std::int32_t* numerator, std::int32_t* denominator) const
{
    if (const AAX_Result fault = Begin("GetCurrentMeter"))
        return fault;
    const SMeter meter = Meter();
    Answer(numerator, meter.mNumerator);
    Answer(denominator, meter.mDenominator);
    return kAAX_Success;
}

AAX_Result CHostTransport::IsTransportPlaying(bool* playing) const
{
    if (const AAX_Result fault = Begin("IsTransportPlaying"))
        return fault;
    Answer(playing, mState.mPlaying);
    return kAAX_Success;
}

AAX_Result CHostTransport::GetCurrentTickPosition(std::int64_t* ticks) const
{
    if (const AAX_Result fault = Begin("GetCurrentTickPosition"))
        return fault;
    Answer(ticks, TicksAt(mState.mSamplePosition));
    return kAAX_Success;
}

AAX_Result CHostTransport::GetCurrentLoopPosition(bool* looping, std::int64_t* startTick,
                                                  std::int64_t* endTick) const
{
    if (const AAX_Result fault = Begin("GetCurrentLoopPosition"))
        return fault;
    Answer(looping, mState.mLooping);
    Answer(startTick, mState.mLoopStartTick);
    Answer(endTick, mState.mLoopEndTick);
    return kAAX_Success;
}

AAX_Result CHostTransport::GetCurrentNativeSampleLocation(std::int64_t* samples) const
{
    if (const AAX_Result fault = Begin("GetCurrentNativeSampleLocation"))
        return fault;
    Answer(samples, mState.mSamplePosition);
    return kAAX_Success;
}

AAX_Result CHostTransport::GetCustomTickPosition(std::int64_t* ticks, std::int64_t sampleLocation) const
{
    if (const AAX_Result fault = Begin("GetCustomTickPosition"))
        return fault;
    Answer(ticks, TicksAt(sampleLocation));
    return kAAX_Success;
}

AAX_Result CHostTransport::GetBarBeatPosition(std::int32_t* bars, std::int32_t* beats,
                                              std::int64_t* displayTicks, std::int64_t sampleLocation) const
{
    if (const AAX_Result fault = Begin("GetBarBeatPosition"))
        return fault;
    const std::int64_t tick = TicksAt(sampleLocation);
    const SBarBeat place = CountBarsAndBeats(MeterAt(tick), tick);
    Answer(bars, place.mBar);
    Answer(beats, place.mBeat);
    Answer(displayTicks, place.mTicks * mState.mDisplayTicksPerQuarter / kTicksPerQuarter);
    return kAAX_Success;
}

AAX_Result CHostTransport::GetTicksPerQuarter(std::uint32_t* ticks) const
{
    if (const AAX_Result fault = Begin("GetTicksPerQuarter"))
        return fault;
    Answer(ticks, kTicksPerQuarter);
    return kAAX_Success;
}

AAX_Result CHostTransport::GetCurrentTicksPerBeat(std::uint32_t* ticks) const
{
    if (const AAX_Result fault = Begin("GetCurrentTicksPerBeat"))
        return fault;
    Answer(ticks, Meter().TicksPerBeat());
    return kAAX_Success;
}

AAX_Result CHostTransport::GetTimelineSelectionStartPosition(std::int64_t* samples) const
{
    if (const AAX_Result fault = Begin("GetTimelineSelectionStartPosition"))
        return fault;
    Answer(samples, mState.mSelectionStart);
    return kAAX_Success;
}

AAX_Result CHostTransport::GetTimeCodeInfo(std::int32_t* frameRate, std::int32_t* offset) const
{
    if (const AAX_Result fault = Begin("GetTimeCodeInfo"))
        return fault;
    Answer(frameRate, 0); // no time code
    Answer(offset, 0);
    return kAAX_Success;
}

AAX_Result CHostTransport::GetFeetFramesInfo(std::int32_t* feetFramesRate, std::int64_t* offset) const
{
    if (const AAX_Result fault = Begin("GetFeetFramesInfo"))
        return fault;
    Answer(feetFramesRate, 0);
    Answer(offset, 0);
    return kAAX_Success;
}
