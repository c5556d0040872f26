#include "Tools/aaxhost/player/TempoMap.h"

#include <algorithm>
#include <iterator>

CTempoMap::CTempoMap(double inBeatsPerMinute) : mStretches{{0.0, 0.0, inBeatsPerMinute}} {}

CTempoMap::CTempoMap(const std::vector<STempoChange>& inChanges) : CTempoMap()
{
    for (const STempoChange& change : inChanges)
    {
        const SStretch& last = mStretches.back();
        const double quarters =
            last.mQuarters + (change.mSeconds - last.mSeconds) * last.mBeatsPerMinute / 60.0;
        mStretches.push_back({change.mSeconds, quarters, change.mBeatsPerMinute});
    }
}

const CTempoMap::SStretch& CTempoMap::At(double inSeconds) const
{
    const auto after =
        std::upper_bound(mStretches.begin() + 1, mStretches.end(), inSeconds,
                         [](double time, const SStretch& stretch) { return time < stretch.mSeconds; });
    return *std::prev(after);
}
