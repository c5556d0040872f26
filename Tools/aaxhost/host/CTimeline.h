#pragma once
#include <cstdint>
#include <vector>

/** From here on another tempo holds. */
struct STempoChange
{
    double mSeconds = 0.0;
    double mBeatsPerMinute = 120.0; // quarter notes; above 0
};

struct SMeter
{
    std::int32_t mNumerator = 4;
    std::int32_t mDenominator = 4;
    bool operator==(const SMeter&) const = default;

    /** Ticks of a beat, at least 1; those of a quarter note where the denominator is 0 or less. */
    std::int64_t TicksPerBeat() const noexcept;
    /** Ticks of a bar, of one beat where the numerator is 0 or less. */
    std::int64_t TicksPerBar() const noexcept;
};

/** From here on another meter holds. */
struct SMeterChange
{
    double mSeconds = 0.0;
    SMeter mMeter;
};

/** A place in bars and beats, which both count from 1; there are bars before the first. */
struct SBarBeat
{
    std::int64_t mBar = 1;
    std::int64_t mBeat = 1;
    std::int64_t mTicks = 0; // since the beat began
    bool operator==(const SBarBeat&) const = default;
};

/**
 * Tempo and meter over time, and how time, ticks, bars and beats go together. Each tempo and each meter holds
 * up to the next change. A meter begins a bar, also where the one before it is not full.
 *
 * Threads: any, once it is made. What it is asked allocates nothing.
 */
class CTimeline
{
public:
    /** A tick's part of a quarter note. */
    static constexpr std::uint32_t kTicksPerQuarter = 960000;

    struct STempo
    {
        double mSeconds = 0.0;  // where it begins
        double mQuarters = 0.0; // quarter notes gone by until then
        double mBeatsPerMinute = 120.0;
    };
    struct SMeterStretch
    {
        std::int64_t mTick = 0; // where it begins
        std::int64_t mBar = 1;  // that begins there
        SMeter mMeter;
    };

    /** One tempo and one meter for all time. */
    CTimeline(double inBeatsPerMinute = 120.0, const SMeter& inMeter = {});
    /** @param inTempos, inMeters in the order of their times, from 0 on; 120 and 4/4 hold before the first.
     */
    CTimeline(const std::vector<STempoChange>& inTempos, const std::vector<SMeterChange>& inMeters);

    const STempo& TempoAt(double inSeconds) const noexcept;
    double QuartersAt(double inSeconds) const noexcept;
    double SecondsAt(double inQuarters) const noexcept;
    const SMeterStretch& MeterAt(std::int64_t inTick) const noexcept;
    SBarBeat BarBeatAt(std::int64_t inTick) const noexcept;

    /** At least one, the first from 0 on. */
    const std::vector<STempo>& Tempos() const noexcept { return mTempos; }
    /** At least one, the first from 0 on. */
    const std::vector<SMeterStretch>& Meters() const noexcept { return mMeters; }

    /** Whole ticks that have gone by; 0 where no 64-bit number says how many. */
    static std::int64_t TicksOf(double inQuarters) noexcept;

private:
    std::vector<STempo> mTempos;
    std::vector<SMeterStretch> mMeters;
};

/** Counts on from where a meter begins, or back from there. */
SBarBeat CountBarsAndBeats(const CTimeline::SMeterStretch& inMeter, std::int64_t inTick) noexcept;
