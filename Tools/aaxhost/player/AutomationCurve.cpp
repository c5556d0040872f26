#include "Tools/aaxhost/player/AutomationCurve.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace
{
constexpr SPointForm kForm{"automation file", "value", "1.5,0.25", 0.0, 1.0};
} // namespace

CAutomationCurve::CAutomationCurve(std::vector<SPoint> inPoints) : mPoints(std::move(inPoints)) {}

COutcome<CAutomationCurve> CAutomationCurve::Parse(std::string_view inText)
{
    auto points = ParsePoints(inText, kForm);
    if (!points)
        return points.Problem();
    return CAutomationCurve(std::move(*points));
}

COutcome<CAutomationCurve> CAutomationCurve::ReadFile(const std::string& inPath)
{
    auto points = ReadPointFile(inPath, kForm);
    if (!points)
        return points.Problem();
    return CAutomationCurve(std::move(*points));
}

CAutomationCurve CAutomationCurve::StepAt(double inSeconds)
{
    return CAutomationCurve({{inSeconds, 0.0}, {inSeconds, 1.0}});
}

double CAutomationCurve::ValueAt(double inSeconds) const
{
    const auto after =
        std::upper_bound(mPoints.begin(), mPoints.end(), inSeconds,
                         [](double time, const SPoint& point) { return time < point.mSeconds; });
    if (after == mPoints.begin())
        return mPoints.front().mValue;
    if (after == mPoints.end())
        return mPoints.back().mValue;
    const SPoint& before = *std::prev(after);
    const double way = (inSeconds - before.mSeconds) / (after->mSeconds - before.mSeconds);
    return before.mValue + way * (after->mValue - before.mValue);
}
