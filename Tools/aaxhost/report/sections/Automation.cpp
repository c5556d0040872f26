#include "Tools/aaxhost/report/HtmlChart.h"
#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/HtmlTable.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace
{
/** Every eighth point. */
std::string Numbers(const SReportAutomation& inAutomation)
{
    SHtmlTable table{{"time", "value", "level"}, {}};
    const auto count = static_cast<double>(inAutomation.mSent.size());
    for (std::size_t i = 0; i < inAutomation.mSent.size(); i += 8)
        table.mRows.push_back(
            {fmt::format("{:.2f} s", inAutomation.mSeconds * static_cast<double>(i) / count),
             fmt::format("{:.2f}", inAutomation.mSent[i]),
             fmt::format("{:.1f} dBFS", inAutomation.mRendered[i])});
    return table.Folded();
}
} // namespace

std::string AutomationSection(const SReportAutomation& inAutomation)
{
    if (!inAutomation.mProblem.empty() || inAutomation.mSent.size() < 2)
        return Note(inAutomation.mProblem);
    const auto [lowest, highest] = std::ranges::minmax(inAutomation.mRendered);
    const double bottom = std::floor(lowest / 6.0) * 6.0;
    const double top = std::max(bottom + 6.0, std::ceil(highest / 6.0) * 6.0);
    Points sent;
    Points rendered;
    for (std::size_t i = 0; i < inAutomation.mSent.size(); ++i)
    {
        const double x = static_cast<double>(i) / static_cast<double>(inAutomation.mSent.size() - 1);
        sent.push_back({x, inAutomation.mSent[i]});
        rendered.push_back({x, (inAutomation.mRendered[i] - bottom) / (top - bottom)});
    }
    CHtmlChart sentChart("The automation curve as sent");
    sentChart.SetAxes("time (s)", "normalized value (0 to 1)");
    sentChart.SetSummary("From 0 to 1 and back in equal steps");
    sentChart.SetHorizontalTicks(SecondTicks(inAutomation.mSeconds));
    sentChart.SetVerticalTicks({{0.0, "0"}, {0.5, "0.5"}, {1.0, "1"}});
    sentChart.AddLine(sent, "b");
    CHtmlChart renderedChart("The level as rendered");
    renderedChart.SetAxes("time (s)", "level (dBFS)");
    renderedChart.SetSummary(fmt::format("Between {:.1f} and {:.1f} dB", lowest, highest));
    renderedChart.SetHorizontalTicks(SecondTicks(inAutomation.mSeconds));
    renderedChart.SetVerticalTicks({{0.0, fmt::format("{:.0f}", bottom)},
                                    {0.5, fmt::format("{:g}", 0.5 * (bottom + top))},
                                    {1.0, fmt::format("{:.0f}", top)}});
    renderedChart.AddLine(rendered, "a");
    return fmt::format(
        "<p>Parameter {} moved from 0 to 1 and back while noise or a held note is rendered.</p>\n"
        "<div class=\"pair\">\n{}{}</div>\n",
        Escaped(inAutomation.mParameter),
        Figure("<span class=\"key b\">value as sent</span>", sentChart.Svg()),
        Figure("<span class=\"key\">level as rendered</span>", renderedChart.Svg() + Numbers(inAutomation)));
}
