#pragma once
#include <vector>

/** From here on another tempo holds. */
struct STempoChange
{
    double mSeconds = 0.0;
    double mBeatsPerMinute = 120.0; // above 0
};

/** The tempo over time, and how many quarter notes have gone by: each tempo holds up to the next change. */
class CTempoMap
{
public:
    /** One tempo for all time. */
    CTempoMap(double inBeatsPerMinute = 120.0);
    /** @param inChanges in the order of their times, from 0 on; 120 holds before the first. */
    explicit CTempoMap(const std::vector<STempoChange>& inChanges);

    struct SStretch
    {
        double mSeconds = 0.0;  // where it begins
        double mQuarters = 0.0; // gone by until then
        double mBeatsPerMinute = 120.0;
    };
    /** The stretch that a time is in. */
    const SStretch& At(double inSeconds) const;

private:
    std::vector<SStretch> mStretches; // at least one, the first from 0 on
};
