#pragma once
#include "Interfaces/AAX/AAX_IACFHost.h"
#include "Interfaces/AAX/AAX_ITransport.h"
#include "Tools/aaxhost/host/CTimeline.h"

#include <optional>

class CHostLog;
class CInstanceHost;

/** Where the transport stands and how it runs. Any of it may be what no host should answer: no number, a
 * meter of 0/0 or 4/3, a loop that ends before it begins. */
struct STransportState
{
    double mTempo = 120.0; // beats per minute, for the whole timeline
    std::int32_t mMeterNumerator = 4;
    std::int32_t mMeterDenominator = 4;
    std::optional<CTimeline> mTimeline{}; // where there is one, the tempo and the meter are its
    bool mPlaying = false;
    std::int64_t mSamplePosition = 0;
    double mSampleRate = 44100.0; // Hz
    bool mLooping = false;
    std::int64_t mLoopStartTick = 0;
    std::int64_t mLoopEndTick = 0;
    std::int64_t mSelectionStart = 0; // samples
    std::int64_t mTickOffset = 0; // added to the tick of every position: ticks can be made to run backwards
    // What display ticks count; hosts differ in it.
    std::int64_t mDisplayTicksPerQuarter = CTimeline::kTicksPerQuarter;
};

/**
 * The host's transport, both as the interface of an instance's context and as that of a transport node.
 *
 * Tempo, meter, ticks, bars and beats agree with each other and with the position in samples. A change of
 * tempo holds from the sample nearest to its time on. Any single call can be made to fail (`CHostLog`).
 *
 * Threads: the state is set between render calls; the calls of the module allocate nothing.
 */
class CHostTransport final : public AAX_IACFTransport_V2, public AAX_ITransport
{
public:
    /** @param inOwner counts the references and answers the queries; null: the object stands alone. */
    explicit CHostTransport(CHostLog& inLog, CInstanceHost* inOwner = nullptr);
    CHostTransport(const CHostTransport&) = delete;
    CHostTransport& operator=(const CHostTransport&) = delete;

    STransportState& State() noexcept { return mState; }
    /** Every call answers this and leaves its out arguments alone; kAAX_Success ends that. */
    void SetResult(AAX_Result inResult) noexcept { mResult = inResult; }

    ACFRESULT QueryInterface(const acfIID& iid, void** out) override;
    acfUInt32 AddRef() override;
    acfUInt32 Release() override;

    AAX_Result GetCurrentTempo(double* beatsPerMinute) const override;
    AAX_Result GetCurrentMeter(std::int32_t* numerator, std::int32_t* denominator) const override;
    AAX_Result IsTransportPlaying(bool* playing) const override;
    AAX_Result GetCurrentTickPosition(std::int64_t* ticks) const override;
    AAX_Result GetCurrentLoopPosition(bool* looping, std::int64_t* startTick,
                                      std::int64_t* endTick) const override;
    AAX_Result GetCurrentNativeSampleLocation(std::int64_t* samples) const override;
    AAX_Result GetCustomTickPosition(std::int64_t* ticks, std::int64_t sampleLocation) const override;
    AAX_Result GetBarBeatPosition(std::int32_t* bars, std::int32_t* beats, std::int64_t* displayTicks,
                                  std::int64_t sampleLocation) const override;
    AAX_Result GetTicksPerQuarter(std::uint32_t* ticks) const override;
    AAX_Result GetCurrentTicksPerBeat(std::uint32_t* ticks) const override;
    AAX_Result GetTimelineSelectionStartPosition(std::int64_t* samples) const override;
    AAX_Result GetTimeCodeInfo(std::int32_t* frameRate, std::int32_t* offset) const override;
    AAX_Result GetFeetFramesInfo(std::int32_t* feetFramesRate, std::int64_t* offset) const override;

    static constexpr std::uint32_t kTicksPerQuarter = CTimeline::kTicksPerQuarter;

private:
    /** Logs the call. @return what it must answer. */
    AAX_Result Begin(const char* inName) const noexcept;
    std::int64_t TicksAt(std::int64_t inSampleLocation) const noexcept;
    CTimeline::SMeterStretch MeterAt(std::int64_t inTick) const noexcept;
    /** The meter at the present position. */
    SMeter Meter() const noexcept { return MeterAt(TicksAt(mState.mSamplePosition)).mMeter; }

    CHostLog& mLog;
    CInstanceHost* mOwner = nullptr;
    STransportState mState;
    AAX_Result mResult = kAAX_Success;
};
