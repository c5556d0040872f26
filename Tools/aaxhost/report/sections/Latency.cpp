#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/sections/Ticks.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <string_view>

namespace
{
std::string ImpulseChart(const std::vector<double>& inImpulse, int inLatency)
{
    double peak = 1e-6;
    for (const double sample : inImpulse)
        peak = std::max(peak, std::abs(sample));
    Points line;
    const auto last = static_cast<double>(inImpulse.size() - 1);
    for (std::size_t i = 0; i < inImpulse.size(); ++i)
        line.push_back({static_cast<double>(i) / last, 0.5 + 0.48 * inImpulse[i] / peak});
    CHtmlChart chart("The first samples after an impulse");
    chart.SetHorizontalTicks(
        {{0.0, "0"}, {60.0 / last, "60"}, {120.0 / last, "120"}, {180.0 / last, "180 samples"}});
    chart.SetVerticalTicks(
        {{0.02, fmt::format("{:.2g}", -peak)}, {0.5, "0"}, {0.98, fmt::format("{:.2g}", peak)}});
    chart.AddLine(line, "a");
    std::string caption = "<span class=\"key\">answer to an impulse</span>";
    if (inLatency >= 0 && inLatency <= last)
    {
        const double x = inLatency / last;
        const CHtmlChart::SPoint mark[] = {{x, 0.0}, {x, 1.0}};
        chart.AddLine(mark, "b");
        caption += fmt::format("<span class=\"key b\">reported latency, {} samples</span>", inLatency);
    }
    return Figure(caption, chart.Svg());
}
} // namespace

std::string LatencySection(const SReportMaterial& inMaterial, const std::vector<SCheckResult>& inResults)
{
    std::string html;
    for (const SCheckResult& result : inResults)
        if (std::string_view(result.mCheck->mName) == "rendering.latency")
            html += fmt::format("<p>{}</p>\n",
                                Escaped(!result.mFinding.mReason.empty()
                                            ? result.mFinding.mReason
                                            : "An impulse arrives when the reported latency says."));
    return inMaterial.mSignals.mImpulse.size() < 2
               ? html + Note("There is no impulse response to show.")
               : html + "<div class=\"pair\">" +
                     ImpulseChart(inMaterial.mSignals.mImpulse, inMaterial.mIdentity.mLatency) + "</div>\n";
}
