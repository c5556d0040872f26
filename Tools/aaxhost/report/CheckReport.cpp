#include "Tools/aaxhost/report/CheckReport.h"

#include "Tools/aaxhost/check/CheckSummary.h"
#include "Tools/aaxhost/report/HtmlChart.h"
#include "Tools/aaxhost/report/ReportStyle.h"
#include "Tools/aaxhost/report/RunFacts.h"
#include "Tools/aaxhost/report/Spectrum.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fmt/format.h>

namespace
{
using Points = std::vector<CHtmlChart::SPoint>;

std::string Note(const std::string& inSentence)
{
    return fmt::format("<p class=\"note\">{}</p>\n", Escaped(inSentence));
}

std::string Figure(const std::string& inCaption, const std::string& inContent)
{
    return fmt::format("<figure><figcaption>{}</figcaption>\n{}</figure>\n", inCaption, inContent);
}

std::string Fact(const std::string& inName, const std::string& inValue)
{
    return fmt::format("<div><dt>{}</dt><dd>{}</dd></div>\n", Escaped(inName), Escaped(inValue));
}

std::string TitleOf(const SCheckJob& inJob, const SReportIdentity& inIdentity)
{
    if (!inIdentity.mName.empty())
        return inIdentity.mName;
    const std::filesystem::path path(inJob.mModule);
    return (path.has_filename() ? path : path.parent_path()).stem().string();
}

const char* ColourOf(EFitness inFitness)
{
    switch (inFitness)
    {
    case EFitness::Fit: return "passed";
    case EFitness::NotFit: return "failed";
    case EFitness::Unknown: break;
    }
    return "warning";
}

std::string Verdict(const std::vector<SCheckResult>& inResults)
{
    const SCheckCounts counts = CountVerdicts(inResults);
    std::string bar;
    for (const auto& [name, count] :
         {std::pair<const char*, int>{"failed", counts.mFailed + counts.mUnstable},
          {"warning", counts.mWarnings},
          {"skipped", counts.mSkipped + counts.mUnseen},
          {"passed", counts.mPassed}})
        if (count > 0)
            bar += fmt::format("<span class=\"{}\" style=\"flex:{}\"></span>", name, count);
    return fmt::format("<div class=\"verdict {}\"><strong>{}</strong><div class=\"tally\" "
                       "aria-hidden=\"true\">{}</div>{}</div>\n",
                       ColourOf(FitnessOf(inResults)), Escaped(FitnessInWords(inResults)), bar,
                       Escaped(CountsInWords(inResults)));
}

std::string Findings(const std::vector<SCheckResult>& inResults);

std::string Header(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults,
                   const SReportIdentity& inIdentity)
{
    std::string html = fmt::format("<header>\n<h1>{}</h1>\n", Escaped(TitleOf(inJob, inIdentity)));
    if (!inIdentity.mManufacturer.empty())
        html += fmt::format("<p>{}</p>\n", Escaped(inIdentity.mManufacturer));
    html += Verdict(inResults) + Findings(inResults) + "<dl class=\"facts\">\n";
    if (inIdentity.mProblem.empty())
        html +=
            Fact("Effect", inIdentity.mEffectID) + Fact("Manufacturer code", inIdentity.mManufacturerCode) +
            Fact("Product and plug-in code", inIdentity.mProductCode == inIdentity.mPluginCode
                                                 ? inIdentity.mPluginCode
                                                 : inIdentity.mProductCode + ", " + inIdentity.mPluginCode) +
            Fact("Plug-in version", inIdentity.mVersion) +
            Fact("Reported latency", fmt::format("{} samples", inIdentity.mLatency));
    html += Fact("Strictness", fmt::format("{} of {}", inJob.mStrictness, kHighestStrictness));
    return html + "</dl>\n</header>\n";
}

/** What needs a look, before everything else, what only the module does first; nothing when there is none. */
std::string Findings(const std::vector<SCheckResult>& inResults)
{
    std::vector<const SCheckResult*> list;
    for (const EVerdict verdict : {EVerdict::Unstable, EVerdict::Failed, EVerdict::Warning})
        for (const SCheckResult& result : inResults)
            if (result.mFinding.mVerdict == verdict)
                list.push_back(&result);
    std::stable_partition(list.begin(), list.end(),
                          [](const auto* result) { return result->mFault == EFault::Module; });
    std::string items;
    for (const SCheckResult* const result : list)
        items += fmt::format("<li><span class=\"mark {0}\">{0}</span><div>{1} <em>{2}</em> <code>{3}</code>"
                             "</div></li>\n",
                             NameOfVerdict(result->mFinding.mVerdict), Escaped(result->mFinding.mReason),
                             Escaped(FaultInWords(*result)), Escaped(result->mCheck->mName));
    return items.empty() ? items : "<ul class=\"findings\">\n" + items + "</ul>\n";
}

std::string Channels(int inCount)
{
    return inCount == 1 ? "mono" : inCount == 2 ? "stereo" : fmt::format("{} channels", inCount);
}

/** Inputs on the left, outputs on the right, one wire a stem. */
std::string Stems(const SReportIdentity& inIdentity)
{
    if (!inIdentity.mProblem.empty())
        return Note(inIdentity.mProblem);
    std::vector<std::string> left;
    if (inIdentity.mInputs > 0)
        left.push_back("Input, " + Channels(inIdentity.mInputs));
    for (const std::string& node : inIdentity.mMidiNodes)
        left.push_back("MIDI" + (node.empty() ? std::string() : ", " + node));
    std::vector<std::string> right{"Output, " + Channels(inIdentity.mOutputs)};
    for (const SReportStem& stem : inIdentity.mAuxStems)
        right.push_back((stem.mName.empty() ? "Auxiliary" : stem.mName) + ", " + Channels(stem.mChannels));
    const std::size_t rows = std::max({left.size(), right.size(), std::size_t{2}});
    constexpr double row = 30.0;
    const double height = 24.0 + row * static_cast<double>(rows);
    std::string svg =
        fmt::format("<svg viewBox=\"0 0 480 {}\" role=\"img\" aria-label=\"Inputs and outputs\">\n", height);
    svg += fmt::format("<rect class=\"box\" x=\"180\" y=\"12\" width=\"120\" height=\"{}\" rx=\"8\"/>"
                       "<text class=\"name middle\" x=\"240\" y=\"{}\">module</text>\n",
                       height - 24.0, height / 2.0 + 4.0);
    const auto wires =
        [&](const std::vector<std::string>& names, double from, double to, double text, const char* anchor)
    {
        const double gap = (height - 24.0) / static_cast<double>(names.size());
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            const double y = 12.0 + gap * (static_cast<double>(i) + 0.5);
            std::string name = names[i].size() > 22 ? names[i].substr(0, 21) + "\xE2\x80\xA6" : names[i];
            svg += fmt::format("<path class=\"wire\" d=\"M{0} {2:.1f}H{1}\"/><text class=\"{4}\" x=\"{3}\" "
                               "y=\"{5:.1f}\">{6}</text>\n",
                               from, to, y, text, anchor, y - 5.0, Escaped(name));
        }
    };
    wires(left, 10.0, 180.0, 10.0, "begin");
    wires(right, 300.0, 470.0, 470.0, "end");
    return Figure("As the host sees them", "<div class=\"stems\">\n" + svg + "</svg>\n</div>\n");
}

std::string Check(const SCheckResult& inResult)
{
    const std::string& reason = inResult.mFinding.mReason;
    const std::string why =
        fmt::format("<p class=\"why\">{} <em>{}</em></p>", Escaped(reason), Escaped(FaultInWords(inResult)));
    return fmt::format("<li><span class=\"mark {0}\">{0}</span><code>{1}</code><div "
                       "class=\"said\">{2}<p class=\"what\">{3} <small>{4:.2f} s</small></p></div></li>\n",
                       NameOfVerdict(inResult.mFinding.mVerdict), Escaped(inResult.mCheck->mName),
                       reason.empty() ? std::string() : why, Escaped(inResult.mCheck->mDescription),
                       inResult.mSeconds);
}

std::string Heading(std::string_view inGroup)
{
    std::string heading(inGroup == "midi" ? "MIDI" : inGroup);
    std::ranges::replace(heading, '-', ' ');
    return heading;
}

/** A group after the other: open what did not pass, folded the rest. */
std::string Checks(const std::vector<SCheckResult>& inResults)
{
    std::string html;
    for (auto begin = inResults.begin(); begin != inResults.end();)
    {
        const std::string_view group = begin->mCheck->Group();
        const auto end =
            std::find_if(begin, inResults.end(),
                         [&](const SCheckResult& result) { return result.mCheck->Group() != group; });
        std::string open;
        std::string folded;
        for (auto result = begin; result != end; ++result)
            (result->mFault == EFault::None ? folded : open) += Check(*result);
        html += fmt::format("<h3>{}</h3>\n", Heading(group));
        if (!open.empty())
            html += fmt::format("<ul class=\"checks\">\n{}</ul>\n", open);
        if (!folded.empty())
            html += fmt::format("<details><summary>{} passed or skipped</summary>\n<ul class=\"checks\">\n"
                                "{}</ul>\n</details>\n",
                                std::count_if(begin, end,
                                              [](const SCheckResult& result)
                                              { return result.mFault == EFault::None; }),
                                folded);
        begin = end;
    }
    return html.empty() ? Note("No check was run.") : html;
}

/** How to have it again. */
std::string Run(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults)
{
    const SRunFacts facts = RunFactsOf(inJob);
    double seconds = 0.0;
    for (const SCheckResult& result : inResults)
        seconds += result.mSeconds;
    return "<dl class=\"facts\">\n" + Fact("Module", inJob.mModule) + Fact("Checked", facts.mDate) +
           Fact("With", facts.mTool) + Fact("On", facts.mMachine) +
           Fact("The checks took", fmt::format("{:.1f} s", seconds)) + "</dl>\n<p>Once more: <code>" +
           Escaped(facts.mCommand) + "</code></p>\n";
}

std::vector<STick> SecondTicks(double inSeconds)
{
    std::vector<STick> ticks;
    constexpr double step = 0.5;
    const int count = static_cast<int>(inSeconds / step + 1e-9);
    for (int i = 0; i <= count; ++i)
        ticks.push_back({inSeconds > 0.0 ? step * i / inSeconds : 0.0, fmt::format("{} s", step * i)});
    return ticks;
}

std::string Waveform(const SReportSignal& inSignal)
{
    double peak = 1e-6;
    for (std::size_t i = 0; i < inSignal.mLowest.size(); ++i)
        peak = std::max({peak, -inSignal.mLowest[i], inSignal.mHighest[i]});
    Points lower;
    Points upper;
    for (std::size_t i = 0; i < inSignal.mLowest.size(); ++i)
    {
        const double x = (static_cast<double>(i) + 0.5) / static_cast<double>(inSignal.mLowest.size());
        lower.push_back({x, 0.5 + 0.48 * inSignal.mLowest[i] / peak});
        upper.push_back({x, 0.5 + 0.48 * inSignal.mHighest[i] / peak});
    }
    CHtmlChart chart("Waveform: " + inSignal.mTitle);
    chart.SetHorizontalTicks(SecondTicks(inSignal.mSeconds));
    chart.SetVerticalTicks(
        {{0.02, fmt::format("{:.2g}", -peak)}, {0.5, "0"}, {0.98, fmt::format("{:.2g}", peak)}});
    chart.AddBand(lower, upper, "a");
    return Figure(Escaped(inSignal.mTitle) + ": waveform", chart.Svg());
}

std::string SpectrumFigure(const SReportSignal& inSignal, double inRate)
{
    if (inSignal.mSpectrum.empty())
        return {};
    constexpr double floor = -120.0; // dB at the bottom of the picture
    const std::size_t count = inSignal.mSpectrum.size();
    Points line;
    for (std::size_t i = 0; i < count; ++i)
        line.push_back({static_cast<double>(i) / static_cast<double>(count - 1),
                        (inSignal.mSpectrum[i] - floor) / -floor});
    const double lowest = SpectrumFrequency(0, count, inRate);
    std::vector<STick> hertz;
    for (const auto& [frequency, text] :
         {std::pair<double, const char*>{100.0, "100 Hz"}, {1000.0, "1 kHz"}, {10000.0, "10 kHz"}})
        hertz.push_back({std::log(frequency / lowest) / std::log(0.5 * inRate / lowest), text});
    CHtmlChart chart("Spectrum: " + inSignal.mTitle);
    chart.SetHorizontalTicks(hertz);
    chart.SetVerticalTicks({{0.0, "-120 dB"}, {1.0 / 3.0, "-80"}, {2.0 / 3.0, "-40"}, {1.0, "0"}});
    chart.AddLine(line, "a");
    return Figure(Escaped(inSignal.mTitle) + ": spectrum", chart.Svg());
}

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

std::string Latency(const SReportMaterial& inMaterial, const std::vector<SCheckResult>& inResults)
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

std::string Signals(const SReportSignals& inSignals)
{
    if (!inSignals.mProblem.empty())
        return Note(inSignals.mProblem);
    if (inSignals.mSignals.empty())
        return Note("The plug-in takes neither audio nor MIDI, so there is nothing to render.");
    std::string html;
    for (const SReportSignal& signal : inSignals.mSignals)
        html += "<div class=\"pair\">\n" + Waveform(signal) + SpectrumFigure(signal, inSignals.mRate) +
                "</div>\n";
    return html;
}

std::string Automation(const SReportAutomation& inAutomation)
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
    sentChart.SetHorizontalTicks(SecondTicks(inAutomation.mSeconds));
    sentChart.SetVerticalTicks({{0.0, "0"}, {0.5, "0.5"}, {1.0, "1"}});
    sentChart.AddLine(sent, "b");
    CHtmlChart renderedChart("The level as rendered");
    renderedChart.SetHorizontalTicks(SecondTicks(inAutomation.mSeconds));
    renderedChart.SetVerticalTicks(
        {{0.0, fmt::format("{:.0f} dB", bottom)}, {1.0, fmt::format("{:.0f}", top)}});
    renderedChart.AddLine(rendered, "a");
    return fmt::format(
        "<p>Parameter {} moved from 0 to 1 and back while noise or a held note is rendered.</p>\n"
        "<div class=\"pair\">\n{}{}</div>\n",
        Escaped(inAutomation.mParameter),
        Figure("<span class=\"key b\">value as sent</span>", sentChart.Svg()),
        Figure("<span class=\"key\">level as rendered</span>", renderedChart.Svg()));
}

std::string Cost(const SReportCost& inCost)
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

std::string Parameters(const SReportIdentity& inIdentity)
{
    if (inIdentity.mParameters.empty())
        return Note(inIdentity.mProblem.empty() ? "There are none." : inIdentity.mProblem);
    std::string rows;
    for (const SReportParameter& parameter : inIdentity.mParameters)
        rows += fmt::format(
            "<tr><td><code>{}</code></td><td>{}</td><td class=\"number\" data-name=\"default\">{:.3f}</td>"
            "<td data-name=\"shown\">{}</td><td class=\"number\" "
            "data-name=\"steps\">{}</td><td>{}</td></tr>\n",
            Escaped(parameter.mID), Escaped(parameter.mName), parameter.mDefault, Escaped(parameter.mText),
            parameter.mSteps == 0 ? "no" : std::to_string(parameter.mSteps),
            parameter.mAutomatable ? "automatable" : "not automatable");
    return "<table class=\"wide\"><thead><tr><th>Identifier</th><th>Name</th><th "
           "class=\"number\">Default</th><th>Shown as</th>"
           "<th class=\"number\">Steps</th><th>Automation</th></tr></thead><tbody>\n" +
           rows + "</tbody></table>\n";
}

std::string Editor(const SReportEditor& inEditor)
{
    if (!inEditor.mProblem.empty() || inEditor.mPngBase64.empty())
        return Note(inEditor.mProblem);
    return Figure(fmt::format("{} by {} pixels", inEditor.mWidth, inEditor.mHeight),
                  fmt::format("<img alt=\"The plug-in's editor\" width=\"{}\" height=\"{}\" "
                              "src=\"data:image/png;base64,{}\">\n",
                              inEditor.mWidth, inEditor.mHeight, inEditor.mPngBase64));
}

std::string Section(const char* inTitle, const std::string& inContent)
{
    return fmt::format("<section>\n<h2>{}</h2>\n{}</section>\n", inTitle, inContent);
}
} // namespace

std::string ReportPage(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults,
                       const SReportMaterial& inMaterial)
{
    return fmt::format("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                       "<title>{}: {}</title>\n<style>{}</style>\n</head>\n<body>\n<main>\n",
                       Escaped(TitleOf(inJob, inMaterial.mIdentity)), Escaped(FitnessInWords(inResults)),
                       kReportStyle) +
           Header(inJob, inResults, inMaterial.mIdentity) +
           Section("Stems and buses", Stems(inMaterial.mIdentity)) + Section("Checks", Checks(inResults)) +
           Section("Test signals", Signals(inMaterial.mSignals)) +
           Section("Latency", Latency(inMaterial, inResults)) +
           Section("Automation", Automation(inMaterial.mAutomation)) +
           Section("Cost", Cost(inMaterial.mCost)) + Section("Parameters", Parameters(inMaterial.mIdentity)) +
           Section("Editor", Editor(inMaterial.mEditor)) + Section("This run", Run(inJob, inResults)) +
           "<footer>Written by <code>aaxhost check --report</code>.</footer>\n</main>\n</body>\n</html>\n";
}

std::string ReportPage(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults)
{
    return ReportPage(inJob, inResults, MeasureModule(inJob.mModule));
}
