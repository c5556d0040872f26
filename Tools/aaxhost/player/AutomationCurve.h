#pragma once
#include "Tools/support/COutcome.h"

#include <string>
#include <string_view>
#include <vector>

/** A parameter's course over time: points joined by straight lines, level before the first and after the
 * last. */
class CAutomationCurve
{
public:
    struct SPoint
    {
        double mSeconds = 0.0;
        double mValue = 0.0; // normalized
    };

    /**
     * @param inText one point a line, `seconds,value`, as UTF-8 with or without its mark; empty lines, lines
     * that begin with # and a first line of two words, the columns' names, are skipped. Times are at least 0
     * and never fall; values are 0 to 1.
     */
    static COutcome<CAutomationCurve> Parse(std::string_view inText);
    static COutcome<CAutomationCurve> ReadFile(const std::string& inPath);

    double ValueAt(double inSeconds) const;
    double EndSeconds() const { return mPoints.back().mSeconds; }

private:
    explicit CAutomationCurve(std::vector<SPoint> inPoints); // at least one

    std::vector<SPoint> mPoints;
};
