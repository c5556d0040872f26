#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/sections/Ticks.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

std::string CostSection(const SReportCost& inCost)
{
    if (!inCost.mProblem.empty() || inCost.mModule.empty())
        return Note(inCost.mProblem);
    double lowest = 1e9;
    double highest = 0.0;
    for (const auto* list : {&inCost.mModule, &inCost.mBare})
        for (const double value : *list)
        {
            lowest = std::min(lowest, std::max(value, 0.01));
            highest = std::max(highest, value);
        }
    const double bottom = std::floor(std::log10(lowest));
    const double top = std::max(bottom + 1.0, std::ceil(std::log10(std::max(highest, 0.02))));
    const auto line = [&](const std::vector<double>& values)
    {
        Points points;
        for (std::size_t i = 0; i < values.size(); ++i)
            points.push_back({static_cast<double>(i) / static_cast<double>(inCost.mBlocks.size() - 1),
                              (std::log10(std::max(values[i], 0.01)) - bottom) / (top - bottom)});
        return points;
    };
    CHtmlChart chart("Time for a block over the block size");
    std::vector<STick> blocks;
    for (std::size_t i = 0; i < inCost.mBlocks.size(); ++i)
        blocks.push_back({static_cast<double>(i) / static_cast<double>(inCost.mBlocks.size() - 1),
                          std::to_string(inCost.mBlocks[i])});
    chart.SetHorizontalTicks(blocks);
    std::vector<STick> times;
    for (int power = static_cast<int>(bottom); power <= static_cast<int>(top); ++power)
        times.push_back(
            {(power - bottom) / (top - bottom), fmt::format("{:g} \xC2\xB5s", std::pow(10.0, power))});
    chart.SetVerticalTicks(times);
    std::string caption = "<span class=\"key\">module</span>";
    chart.AddLine(line(inCost.mModule), "a dots");
    if (!inCost.mBare.empty())
    {
        chart.AddLine(line(inCost.mBare), "b dots");
        caption += "<span class=\"key b\">the plug-in alone</span>";
    }
    std::string rows;
    for (std::size_t i = 0; i < inCost.mModule.size(); ++i)
        rows +=
            fmt::format("<tr><td class=\"number\">{}</td><td class=\"number\">{:.2f}</td><td "
                        "class=\"number\">{}</td></tr>\n",
                        inCost.mBlocks[i], inCost.mModule[i],
                        i < inCost.mBare.size() ? fmt::format("{:.2f}", inCost.mBare[i]) : "\xE2\x80\x93");
    return fmt::format("<p>Microseconds for a block at 48 kHz on the machine that wrote this page, the "
                       "median of many blocks.</p>\n"
                       "{}<div class=\"pair\">\n{}<figure><table><thead><tr><th class=\"number\">Frames</th>"
                       "<th class=\"number\">Module</th><th class=\"number\">Plug-in "
                       "alone</th></tr></thead><tbody>\n{}</tbody></table></figure></div>\n",
                       inCost.mBareProblem.empty() ? std::string() : Note(inCost.mBareProblem),
                       Figure(caption, chart.Svg()), rows);
}
