#include "Source/features/CTransportTime.h"

#include "Interfaces/AAX/AAX_ITransport.h"

#include <bit>
#include <cmath>
#include <limits>

namespace
{
constexpr std::uint32_t kUsualTicksPerQuarter = 960000;
/** Some hosts count these in their displays, whatever their transport counts. */
constexpr double kDisplayTicksPerQuarter = 960.0;
/** Bars begin on these: quarter notes. */
constexpr double kBarGrid = 0.125;

/** Also finite. What is no number is neither. */
bool IsPositive(double inTempo) noexcept
{
    return inTempo > 0.0 && inTempo <= std::numeric_limits<double>::max();
}

bool IsMeter(std::int32_t inNumerator, std::int32_t inDenominator) noexcept
{
    return inNumerator > 0 && inDenominator > 0 &&
           std::has_single_bit(static_cast<std::uint32_t>(inDenominator));
}

double OnGrid(double inQuarters) noexcept { return std::nearbyint(inQuarters / kBarGrid) * kBarGrid; }

/** But for the rounding of a position between two ticks. */
bool IsOnGrid(double inQuarters) noexcept
{
    return std::abs(inQuarters - OnGrid(inQuarters)) <= 1.5 / kDisplayTicksPerQuarter;
}
} // namespace

void CTransportTime::SetSampleRate(double inHertz) noexcept
{
    *this = {};
    mMinutesPerFrame = inHertz > 0.0 ? 1.0 / (60.0 * inHertz) : 0.0;
    mNanosPerFrame = inHertz > 0.0 ? 1e9 / inHertz : 0.0;
}

void CTransportTime::AskTicksPerQuarter(const AAX_ITransport& inTransport) noexcept
{
    std::uint32_t ticks = 0;
    if (inTransport.GetTicksPerQuarter(&ticks) != kAAX_Success || ticks == 0)
        ticks = kUsualTicksPerQuarter;
    mTicksPerQuarter = ticks;
}

// In most blocks all but the position is as it was in the one before. So what comes is compared with what the
// record holds, and looked at only where it differs.
void CTransportTime::Write(const AAX_ITransport* inTransport, const std::int64_t* inClock,
                           std::int32_t inFrames, VstTimeInfo& ioTime) noexcept
{
    const std::int32_t before = ioTime.flags;
    const auto keeps = [before](std::int32_t inFlag, bool inIsSame)
    { return inIsSame && (before & inFlag) != 0; };
    std::int32_t flags = 0;
    if (inClock != nullptr) [[likely]]
    {
        ioTime.nanoSeconds = static_cast<double>(*inClock) * mNanosPerFrame;
        flags = kVstNanosValid;
    }
    if (inTransport == nullptr) [[unlikely]]
    {
        ioTime.flags = flags;
        return;
    }
    if (mTicksPerQuarter == 0.0) [[unlikely]]
        AskTicksPerQuarter(*inTransport);
    std::int64_t frames = 0;
    bool answer = false;
    if (inTransport->IsTransportPlaying(&answer) == kAAX_Success && answer)
    {
        flags |= kVstTransportPlaying;
        frames = inFrames;
    }

    double tempo;
    if (inTransport->GetCurrentTempo(&tempo) == kAAX_Success) [[likely]]
        flags |= keeps(kVstTempoValid, tempo == ioTime.tempo) ? kVstTempoValid : TakeTempo(tempo, ioTime);
    SMeter meter;
    if (inTransport->GetCurrentMeter(&meter.mNumerator, &meter.mDenominator) == kAAX_Success) [[likely]]
    {
        const bool isSame =
            meter.mNumerator == ioTime.timeSigNumerator && meter.mDenominator == ioTime.timeSigDenominator;
        flags |= keeps(kVstTimeSigValid, isSame) ? kVstTimeSigValid : TakeMeter(meter, ioTime);
    }

    std::int64_t location;
    bool isLocated = inTransport->GetCurrentNativeSampleLocation(&location) == kAAX_Success;
    if (!isLocated) [[unlikely]]
        location = 0;
    ioTime.samplePos = static_cast<double>(location);
    if (location != mNextLocation) [[unlikely]]
        flags |= kVstTransportChanged;
    mNextLocation = location + frames;

    std::int64_t tick;
    if (inTransport->GetCurrentTickPosition(&tick) == kAAX_Success) [[likely]]
    {
        ioTime.ppqPos = static_cast<double>(tick) / mTicksPerQuarter;
        flags |= kVstPpqPosValid;
        if (tick < mLastTick) [[unlikely]]
            flags |= kVstTransportChanged;
        mLastTick = tick;
    }
    else
    {
        isLocated = false;
    }
    SBeat beat;
    if (isLocated && inTransport->GetBarBeatPosition(&beat.mBar, &beat.mBeat, &beat.mDisplayTicks,
                                                     location) == kAAX_Success) [[likely]]
    {
        const bool isKnown =
            beat.mBar == mBar.mNumber && ioTime.ppqPos >= mBar.mStart && ioTime.ppqPos < mBar.mEnd;
        flags |= isKnown ? kVstBarsValid : TakeBar(beat, flags, ioTime);
    }
    SLoop loop;
    answer = false;
    if (inTransport->GetCurrentLoopPosition(&answer, &loop.mStart, &loop.mEnd) == kAAX_Success) [[likely]]
    {
        flags |= keeps(kVstCyclePosValid, loop == mLoop) ? kVstCyclePosValid : TakeLoop(loop, ioTime);
        if (answer && (flags & kVstCyclePosValid) != 0)
            flags |= kVstTransportCycleActive;
    }
    constexpr std::int32_t kOfItself = kVstTransportChanged | kVstNanosValid;
    if (((flags ^ before) & ~kOfItself) != 0) [[unlikely]]
        flags |= kVstTransportChanged;
    ioTime.flags = flags;
}

std::int32_t CTransportTime::TakeTempo(double inTempo, VstTimeInfo& ioTime) noexcept
{
    if (!IsPositive(inTempo))
        return 0;
    ioTime.tempo = inTempo;
    return kVstTempoValid | kVstTransportChanged;
}

std::int32_t CTransportTime::TakeMeter(const SMeter& inMeter, VstTimeInfo& ioTime) noexcept
{
    mBar = {};
    if (!IsMeter(inMeter.mNumerator, inMeter.mDenominator))
        return 0;
    ioTime.timeSigNumerator = inMeter.mNumerator;
    ioTime.timeSigDenominator = inMeter.mDenominator;
    return kVstTimeSigValid | kVstTransportChanged;
}

std::int32_t CTransportTime::TakeLoop(const SLoop& inLoop, VstTimeInfo& ioTime) noexcept
{
    if (inLoop.mStart >= inLoop.mEnd)
        return 0;
    mLoop = inLoop;
    ioTime.cycleStartPos = static_cast<double>(inLoop.mStart) / mTicksPerQuarter;
    ioTime.cycleEndPos = static_cast<double>(inLoop.mEnd) / mTicksPerQuarter;
    return kVstCyclePosValid | kVstTransportChanged;
}

std::int32_t CTransportTime::TakeBar(const SBeat& inBeat, std::int32_t inFlags, VstTimeInfo& ioTime) noexcept
{
    mBar = {};
    const bool hasMeter = (inFlags & kVstTimeSigValid) != 0;
    if (!hasMeter || inBeat.mBeat < 1 || inBeat.mBeat > ioTime.timeSigNumerator || inBeat.mDisplayTicks < 0)
        return 0;
    mBar.mNumber = inBeat.mBar;
    mBar.mStart = StartOfBar(ioTime.ppqPos, inBeat, ioTime.timeSigDenominator);
    mBar.mEnd = mBar.mStart + 4.0 * ioTime.timeSigNumerator / ioTime.timeSigDenominator;
    ioTime.barStartPos = mBar.mStart;
    return kVstBarsValid;
}

double CTransportTime::StartOfBar(double inQuarters, const SBeat& inBeat, std::int32_t inDenominator) noexcept
{
    // Hosts count display ticks in one of two units: 960 a quarter note, or the transport's own. A count
    // above 960 a quarter note can only be the transport's, and is remembered. Before that the transport's
    // unit counts only where the bar begins on the grid by it alone.
    const double beatQuarters = 4.0 / inDenominator;
    const auto ticks = static_cast<double>(inBeat.mDisplayTicks);
    if (ticks > beatQuarters * kDisplayTicksPerQuarter)
        mCountsTransportTicks = true;
    const double beatStart = inQuarters - beatQuarters * (inBeat.mBeat - 1);
    const double byTransport = beatStart - ticks / mTicksPerQuarter;
    const double byDisplay = beatStart - ticks / kDisplayTicksPerQuarter;
    const bool isByTransport = mCountsTransportTicks || (IsOnGrid(byTransport) && !IsOnGrid(byDisplay));
    const double start = isByTransport ? byTransport : byDisplay;
    return IsOnGrid(start) ? OnGrid(start) : start;
}

void CTransportTime::Advance(std::int32_t inFrames, VstTimeInfo& ioTime) const noexcept
{
    ioTime.flags &= ~kVstTransportChanged;
    ioTime.nanoSeconds += inFrames * mNanosPerFrame;
    if ((ioTime.flags & kVstTransportPlaying) == 0)
        return;
    ioTime.samplePos += inFrames;
    if ((ioTime.flags & kVstPpqPosValid) == 0 || (ioTime.flags & kVstTempoValid) == 0)
        return;
    ioTime.ppqPos += inFrames * ioTime.tempo * mMinutesPerFrame;
    if ((ioTime.flags & kVstBarsValid) != 0 && ioTime.ppqPos >= mBar.mEnd)
    {
        const double bar = mBar.mEnd - mBar.mStart;
        ioTime.barStartPos = mBar.mStart + std::floor((ioTime.ppqPos - mBar.mStart) / bar) * bar;
    }
}
