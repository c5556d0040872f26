#include "Tools/aaxhost/report/HtmlChart.h"
#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/HtmlTable.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace
{
constexpr double kRate = 48000.0; // Hz, at which it is measured
constexpr double kLeast = 0.0001; // percent: less is drawn there

std::vector<double> Shares(const std::vector<double>& inMicroseconds, const std::vector<int>& inBlocks)
{
    std::vector<double> shares;
    for (std::size_t i = 0; i < inMicroseconds.size(); ++i)
        shares.push_back(ShareOfRealTime(inMicroseconds[i], inBlocks[i], kRate));
    return shares;
}
} // namespace

std::string CostSection(const SReportCost& inCost)
{
    if (!inCost.mProblem.empty() || inCost.mModule.empty())
        return Note(inCost.mProblem);
    const std::vector<double> module = Shares(inCost.mModule, inCost.mBlocks);
    const std::vector<double> bare = Shares(inCost.mBare, inCost.mBlocks);
    double lowest = 100.0;
    double highest = kLeast;
    for (const auto* list : {&module, &bare})
        for (const double share : *list)
        {
            lowest = std::min(lowest, std::max(share, kLeast));
            highest = std::max(highest, share);
        }
    const double bottom = std::floor(std::log10(lowest));
    const double top = std::max(bottom + 1.0, std::ceil(std::log10(highest)));
    const auto last = static_cast<double>(std::max<std::size_t>(inCost.mBlocks.size(), 2) - 1);
    const auto line = [&](const std::vector<double>& shares)
    {
        Points points;
        for (std::size_t i = 0; i < shares.size(); ++i)
            points.push_back({static_cast<double>(i) / last,
                              (std::log10(std::max(shares[i], kLeast)) - bottom) / (top - bottom)});
        return points;
    };
    CHtmlChart chart("Cost of a block as a share of real time, over the block size");
    chart.SetAxes("block size (frames)", "share of real time at 48 kHz (%)");
    chart.SetSummary(fmt::format("{:.3g} % in blocks of {}, {:.3g} % in blocks of {}", module.front(),
                                 inCost.mBlocks.front(), module.back(), inCost.mBlocks.back()));
    std::vector<STick> blocks;
    for (std::size_t i = 0; i < inCost.mBlocks.size(); ++i)
        blocks.push_back({static_cast<double>(i) / last, std::to_string(inCost.mBlocks[i])});
    chart.SetHorizontalTicks(blocks);
    std::vector<STick> shares;
    for (int power = static_cast<int>(bottom); power <= static_cast<int>(top); ++power)
        shares.push_back({(power - bottom) / (top - bottom), fmt::format("{:g}", std::pow(10.0, power))});
    chart.SetVerticalTicks(shares);
    std::string caption = "<span class=\"key\">module</span>";
    chart.AddLine(line(module), "a dots");
    if (!bare.empty())
    {
        chart.AddLine(line(bare), "b dots");
        caption += "<span class=\"key b\">the plug-in alone</span>";
    }
    SHtmlTable table{{"Frames", "Module (\xC2\xB5s)", "Alone (\xC2\xB5s)", "Module (%)", "Alone (%)"}, {}};
    const std::string none = "\xE2\x80\x93";
    for (std::size_t i = 0; i < module.size(); ++i)
    {
        const bool hasBare = i < bare.size();
        table.mRows.push_back({std::to_string(inCost.mBlocks[i]), fmt::format("{:.2f}", inCost.mModule[i]),
                               hasBare ? fmt::format("{:.2f}", inCost.mBare[i]) : none,
                               fmt::format("{:.3f}", module[i]),
                               hasBare ? fmt::format("{:.3f}", bare[i]) : none});
    }
    return fmt::format(
        "<p>What a block takes, the median of many, of the time that it lasts at 48 kHz, on the machine "
        "that wrote this page.</p>\n{}<div class=\"pair\">\n{}<figure>{}</figure></div>\n",
        inCost.mBareProblem.empty() ? std::string() : Note(inCost.mBareProblem), Figure(caption, chart.Svg()),
        table.Html());
}
