#include "Tools/aaxhost/report/HtmlChart.h"
#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/HtmlTable.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <set>

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
    CHtmlChart chart("The first samples after an impulse at 48 kHz");
    chart.SetAxes("time after the impulse (samples)", "amplitude (1 = full scale)");
    chart.SetSummary(fmt::format("Reported are {} samples", inLatency));
    chart.SetHorizontalTicks({{0.0, "0"}, {60.0 / last, "60"}, {120.0 / last, "120"}, {180.0 / last, "180"}});
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

std::string Kilohertz(double inRate) { return fmt::format("{:g}", inRate / 1000.0); }

std::string InSamples(int inLatency, double inRate)
{
    return inLatency < 0 ? "none" : fmt::format("{} ({:.2f} ms)", inLatency, 1000.0 * inLatency / inRate);
}

/** The reported and the measured latency over the rate, of one block size. */
std::string RateChart(const std::vector<const SReportLatencyPoint*>& inPoints)
{
    int highest = 1;
    for (const SReportLatencyPoint* const point : inPoints)
        highest = std::max({highest, point->mReported, point->mMeasured});
    const auto place = [&](std::size_t index) {
        return static_cast<double>(index) /
               static_cast<double>(std::max<std::size_t>(inPoints.size(), 2) - 1);
    };
    const double top = 1.15 * highest;
    Points reported;
    Points measured;
    std::vector<STick> rates;
    for (std::size_t i = 0; i < inPoints.size(); ++i)
    {
        rates.push_back({place(i), Kilohertz(inPoints[i]->mRate)});
        reported.push_back({place(i), inPoints[i]->mReported / top});
        if (inPoints[i]->mMeasured >= 0)
            measured.push_back({place(i), inPoints[i]->mMeasured / top});
    }
    CHtmlChart chart("Latency over the sample rate");
    chart.SetAxes("sample rate (kHz)", "latency (samples)");
    chart.SetSummary("The numbers stand in the table below");
    chart.SetHorizontalTicks(rates);
    chart.SetVerticalTicks({{0.0, "0"}, {highest / top, std::to_string(highest)}});
    std::string caption = "<span class=\"key b\">reported</span>";
    if (!measured.empty())
    {
        chart.AddLine(measured, "a dots");
        caption = "<span class=\"key\">measured by an impulse</span>" + caption;
    }
    chart.AddLine(reported, "b");
    return Figure(fmt::format("{}, in blocks of {} frames", caption, inPoints.front()->mBlock), chart.Svg());
}

std::string RateTable(const SReportLatency& inLatency)
{
    SHtmlTable table{{"Rate", "Block", "Reported", "Measured"}, {}};
    for (const SReportLatencyPoint& point : inLatency.mPoints)
        table.mRows.push_back({Kilohertz(point.mRate) + " kHz", fmt::format("{} frames", point.mBlock),
                               InSamples(point.mReported, point.mRate),
                               InSamples(point.mMeasured, point.mRate)});
    return table.Folded("Every rate and block size");
}

/** What of the table there is to know at a glance. */
std::string InWords(const SReportLatency& inLatency)
{
    std::set<int> off;
    bool isMeasured = false;
    for (const SReportLatencyPoint& point : inLatency.mPoints)
        if (point.mMeasured >= 0)
        {
            isMeasured = true;
            if (point.mMeasured != point.mReported)
                off.insert(static_cast<int>(point.mRate));
        }
    if (!isMeasured)
        return "No impulse comes out, so the latency is only the reported one.";
    return off.empty() ? "At every rate and block size an impulse comes out when the reported latency says."
                       : fmt::format("At {} of the rates an impulse comes out at another time than the "
                                     "reported latency says.",
                                     off.size());
}

/** Those of one block size. */
std::vector<const SReportLatencyPoint*> PointsOf(const SReportLatency& inLatency)
{
    std::vector<const SReportLatencyPoint*> points;
    const int block = inLatency.mPoints[inLatency.mPoints.size() > 1 ? 1 : 0].mBlock;
    for (const SReportLatencyPoint& point : inLatency.mPoints)
        if (point.mBlock == block)
            points.push_back(&point);
    return points;
}
} // namespace

std::string LatencySection(const SReportMaterial& inMaterial)
{
    const SReportLatency& latency = inMaterial.mLatency;
    const std::vector<double>& impulse = inMaterial.mSignals.mImpulse;
    const bool isKnown = latency.mProblem.empty() && !latency.mPoints.empty();
    std::string html = isKnown ? fmt::format("<p>{}</p>\n", InWords(latency)) : Note(latency.mProblem);
    if (!latency.mCut.empty())
        html += Note(fmt::format("Not all were tried: {}.", latency.mCut));
    if (impulse.size() < 2)
        html += Note("There is no impulse response to show.");
    html += "<div class=\"pair\">\n";
    if (impulse.size() >= 2)
        html += ImpulseChart(impulse, inMaterial.mIdentity.mLatency);
    if (!isKnown)
        return html + "</div>\n";
    return html + RateChart(PointsOf(latency)) + "</div>\n" + RateTable(latency);
}
