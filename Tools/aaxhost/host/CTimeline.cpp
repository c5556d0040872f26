#include "Tools/aaxhost/host/CTimeline.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{
/** The last one that begins at the place or before it; the first where all begin later. */
template <class Stretch, class Value>
const Stretch& StretchAt(const std::vector<Stretch>& inStretches, Value inPlace, Value Stretch::*inBegin)
{
    return *std::prev(
        std::ranges::upper_bound(inStretches.begin() + 1, inStretches.end(), inPlace, {}, inBegin));
}

/** Adds a stretch, in place of the last one where that begins at the same place. */
template <class Stretch, class Value>
void AddStretch(std::vector<Stretch>& ioStretches, const Stretch& inNext, Value Stretch::*inBegin)
{
    if (!ioStretches.empty() && ioStretches.back().*inBegin == inNext.*inBegin)
        ioStretches.pop_back();
    ioStretches.push_back(inNext);
}

/** Rounded towards what is less, for a divisor above 0. */
std::int64_t FloorDivide(std::int64_t inNumber, std::int64_t inDivisor) noexcept
{
    return inNumber / inDivisor - (inNumber % inDivisor < 0 ? 1 : 0);
}
} // namespace

std::int64_t SMeter::TicksPerBeat() const noexcept
{
    constexpr std::int64_t perWhole = 4 * std::int64_t{CTimeline::kTicksPerQuarter};
    return mDenominator > 0 ? std::max<std::int64_t>(1, perWhole / mDenominator)
                            : CTimeline::kTicksPerQuarter;
}

std::int64_t SMeter::TicksPerBar() const noexcept
{
    return TicksPerBeat() * std::max<std::int64_t>(1, mNumerator);
}

CTimeline::CTimeline(double inBeatsPerMinute, const SMeter& inMeter)
    : mTempos{{0.0, 0.0, inBeatsPerMinute}}, mMeters{{0, 1, inMeter}}
{
}

CTimeline::CTimeline(const std::vector<STempoChange>& inTempos, const std::vector<SMeterChange>& inMeters)
    : CTimeline()
{
    for (const STempoChange& change : inTempos)
        AddStretch(mTempos, {change.mSeconds, QuartersAt(change.mSeconds), change.mBeatsPerMinute},
                   &STempo::mSeconds);
    for (const SMeterChange& change : inMeters)
    {
        // The nearest tick: a change on a beat lies on it, whatever the sum of the stretches lost.
        const std::int64_t tick = TicksOf(QuartersAt(change.mSeconds) + 0.5 / kTicksPerQuarter);
        SBarBeat begin = BarBeatAt(tick);
        if (begin.mBeat != 1 || begin.mTicks != 0)
            ++begin.mBar;
        AddStretch(mMeters, {tick, begin.mBar, change.mMeter}, &SMeterStretch::mTick);
    }
}

const CTimeline::STempo& CTimeline::TempoAt(double inSeconds) const noexcept
{
    return StretchAt(mTempos, inSeconds, &STempo::mSeconds);
}

double CTimeline::QuartersAt(double inSeconds) const noexcept
{
    const STempo& tempo = TempoAt(inSeconds);
    return tempo.mQuarters + (inSeconds - tempo.mSeconds) * tempo.mBeatsPerMinute / 60.0;
}

double CTimeline::SecondsAt(double inQuarters) const noexcept
{
    const STempo& tempo = StretchAt(mTempos, inQuarters, &STempo::mQuarters);
    return tempo.mSeconds + (inQuarters - tempo.mQuarters) * 60.0 / tempo.mBeatsPerMinute;
}

const CTimeline::SMeterStretch& CTimeline::MeterAt(std::int64_t inTick) const noexcept
{
    return StretchAt(mMeters, inTick, &SMeterStretch::mTick);
}

SBarBeat CTimeline::BarBeatAt(std::int64_t inTick) const noexcept
{
    return CountBarsAndBeats(MeterAt(inTick), inTick);
}

std::int64_t CTimeline::TicksOf(double inQuarters) noexcept
{
    // The sum of several stretches may lie a hair before the tick that it stands for.
    constexpr double kHair = 1e-3;
    const double ticks = inQuarters * kTicksPerQuarter + kHair;
    // Outside of this a double has no 64-bit integer; what is no number comes here as well.
    return std::abs(ticks) < 9.0e18 ? static_cast<std::int64_t>(std::floor(ticks)) : 0;
}

SBarBeat CountBarsAndBeats(const CTimeline::SMeterStretch& inMeter, std::int64_t inTick) noexcept
{
    const std::int64_t perBeat = inMeter.mMeter.TicksPerBeat();
    const std::int64_t perBar = inMeter.mMeter.TicksPerBar();
    const std::int64_t ticks = inTick - inMeter.mTick;
    const std::int64_t bars = FloorDivide(ticks, perBar);
    const std::int64_t inBar = ticks - bars * perBar;
    return {inMeter.mBar + bars, inBar / perBeat + 1, inBar % perBeat};
}
