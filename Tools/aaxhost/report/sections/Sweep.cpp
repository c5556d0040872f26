#include "Tools/aaxhost/report/HtmlChart.h"
#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/HtmlTable.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace
{
constexpr std::size_t kMostDrawn = 48;

struct SScale
{
    double mBottom = 0.0; // dB
    double mTop = 0.0;
};

/** The same for all, so that they compare: from a multiple of 12 dB to another. */
SScale ScaleOf(const std::vector<const SReportSweptParameter*>& inParameters)
{
    double lowest = 0.0;
    double highest = -200.0;
    for (const SReportSweptParameter* const parameter : inParameters)
        for (const double level : parameter->mLevels)
        {
            lowest = std::min(lowest, level);
            highest = std::max(highest, level);
        }
    const double top = std::ceil(highest / 12.0) * 12.0;
    // What is silent at one end would press all others flat.
    return {std::max(std::floor(lowest / 12.0) * 12.0, top - 72.0), top};
}

std::string Shortened(const std::string& inText)
{
    constexpr std::size_t most = 14;
    const std::string text = Escaped(inText); // only to be sure of whole characters
    return text.size() > most && text == inText ? inText.substr(0, most - 1) + "\xE2\x80\xA6" : inText;
}

/** As the plug-in writes it; the number where it writes nothing. */
std::string TextAt(const SReportTexts* inTexts, bool inIsEnd)
{
    std::string number = inIsEnd ? "1" : "0";
    if (inTexts == nullptr)
        return number;
    const std::string& text = inIsEnd ? inTexts->mAtOne : inTexts->mAtZero;
    return text.empty() ? number : WithUnit(text, inTexts->mUnit);
}

std::string SmallMultiple(const SReportSweptParameter& inParameter, const SReportTexts* inTexts,
                          const std::vector<double>& inValues, const SScale& inScale)
{
    Points line;
    SHtmlTable numbers{{"value", "level"}, {}};
    for (std::size_t i = 0; i < inParameter.mLevels.size(); ++i)
    {
        line.push_back(
            {inValues[i], (inParameter.mLevels[i] - inScale.mBottom) / (inScale.mTop - inScale.mBottom)});
        numbers.mRows.push_back(
            {fmt::format("{:g}", inValues[i]), fmt::format("{:.1f} dBFS", inParameter.mLevels[i])});
    }
    const std::string low = TextAt(inTexts, false);
    const std::string high = TextAt(inTexts, true);
    CHtmlChart chart("Level over " + inParameter.mName, EChartSize::Small);
    chart.SetAxes("", "level (dBFS)");
    chart.SetSummary(fmt::format("{:.1f} dB at {}, {:.1f} dB at {}", inParameter.mLevels.front(), low,
                                 inParameter.mLevels.back(), high));
    chart.SetHorizontalTicks({{0.0, Shortened(low)}, {1.0, Shortened(high)}});
    std::vector<STick> levels;
    const double range = inScale.mTop - inScale.mBottom;
    const double step = range > 36.0 ? 24.0 : 12.0;
    for (int i = 0; i * step <= range + 0.1; ++i)
        levels.push_back({1.0 - i * step / range, fmt::format("{:.0f}", inScale.mTop - i * step)});
    chart.SetVerticalTicks(levels);
    chart.AddLine(line, "a dots");
    return Figure(Escaped(inParameter.mName.empty() ? inParameter.mID : inParameter.mName),
                  chart.Svg() + numbers.Folded());
}
} // namespace

std::string SweepSection(const SReportSweep& inSweep, const SReportParameterTexts& inTexts)
{
    if (!inSweep.mProblem.empty() || inSweep.mValues.empty())
        return Note(inSweep.mProblem);
    std::vector<const SReportSweptParameter*> audible;
    std::vector<std::string> others;
    for (const SReportSweptParameter& parameter : inSweep.mParameters)
        if (parameter.mIsAudible && audible.size() < kMostDrawn)
            audible.push_back(&parameter);
        else if (!parameter.mIsAudible)
            others.push_back(parameter.mName.empty() ? parameter.mID : parameter.mName);
    std::string html = fmt::format(
        "<p>The level of the first output over each parameter from 0 to 1, left to right, {}, {:.1f} s after "
        "each change, the others as they are at the start. The ends are labelled as the plug-in writes them; "
        "all "
        "have the same scale.</p>\n",
        inSweep.mIsPlayed ? "with a note played anew for each point" : "with white noise at -12 dB",
        inSweep.mSettling);
    const SScale scale = ScaleOf(audible);
    if (!audible.empty())
    {
        html += "<div class=\"many\">\n";
        for (const SReportSweptParameter* const parameter : audible)
            html += SmallMultiple(*parameter, inTexts.Find(parameter->mID), inSweep.mValues, scale);
        html += "</div>\n";
    }
    const auto heard = static_cast<std::size_t>(
        std::ranges::count(inSweep.mParameters, true, &SReportSweptParameter::mIsAudible));
    if (heard > audible.size())
        html += Note(fmt::format("Of {} parameters that change the level the first {} are drawn.", heard,
                                 audible.size()));
    if (!inSweep.mCut.empty())
        html += Note(fmt::format("{} of {} parameters were swept: {}.", inSweep.mParameters.size(),
                                 inSweep.mAutomatable, inSweep.mCut));
    if (!others.empty())
        html +=
            fmt::format("<p>The level stays within half a decibel{} over: {}.</p>\n",
                        inSweep.mSpread < 0.05
                            ? ""
                            : fmt::format(", beside the {:.1f} dB that it moves by itself,", inSweep.mSpread),
                        Escaped(fmt::format("{}", fmt::join(others, ", "))));
    return html;
}
