#pragma once
#include "Tools/aaxhost/player/PointFile.h"

#include <string>
#include <string_view>
#include <vector>

/** A parameter's course over time: points joined by straight lines, level before the first and after the
 * last. */
class CAutomationCurve
{
public:
    /** @param inText points as `ParsePoints` reads them; values are normalized, 0 to 1. */
    static COutcome<CAutomationCurve> Parse(std::string_view inText);
    static COutcome<CAutomationCurve> ReadFile(const std::string& inPath);
    /** 0 ahead of that time, 1 from then on. */
    static CAutomationCurve StepAt(double inSeconds);

    double ValueAt(double inSeconds) const;
    double EndSeconds() const { return mPoints.back().mSeconds; }

private:
    explicit CAutomationCurve(std::vector<SPoint> inPoints); // at least one

    std::vector<SPoint> mPoints;
};
