#include "Tools/aaxhost/report/CheckReport.h"

#include "Tools/aaxhost/check/CheckSummary.h"
#include "Tools/aaxhost/report/HtmlText.h"
#include "Tools/aaxhost/report/ReportStyle.h"
#include "Tools/aaxhost/report/sections/Sections.h"

#include <fmt/format.h>
#include <span>

namespace
{
struct STitled
{
    const char* mTitle;
    std::string mContent;
};

std::string Contents(std::span<const STitled> inSections)
{
    std::string links;
    for (const STitled& section : inSections)
        links += fmt::format("<li><a href=\"#{}\">{}</a></li>\n", AnchorOf(section.mTitle), section.mTitle);
    return "<nav aria-label=\"On this page\"><ul>\n" + links + "</ul></nav>\n";
}
} // namespace

std::string ReportPage(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults,
                       const SReportMaterial& inMaterial)
{
    const SReportIdentity& identity = inMaterial.mIdentity;
    const STitled sections[] = {
        {"Stems and buses", StemsSection(identity)},
        {"Test signals", SignalsSection(inMaterial.mSignals)},
        {"Parameter sweeps", SweepSection(inMaterial.mSweep, inMaterial.mTexts)},
        {"Automation", AutomationSection(inMaterial.mAutomation)},
        {"Latency", LatencySection(inMaterial)},
        {"Cost", CostSection(inMaterial.mCost)},
        {"Parameters", ParametersSection(identity, inMaterial.mTexts)},
        {"Editor", EditorSection(inMaterial.mEditor)},
        {"What does not cross", LimitsSection(inMaterial.mPlugin, identity.mFeatures)},
        {"Checks", ChecksSection(inResults)},
    };
    std::string html;
    for (const STitled& section : sections)
        html += Section(section.mTitle, section.mContent);
    return fmt::format("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                       "<title>{}: {}</title>\n<style>{}</style>\n</head>\n<body>\n<main>\n",
                       Escaped(TitleOf(inJob, inMaterial.mIdentity)), Escaped(FitnessInWords(inResults)),
                       kReportStyle) +
           HeaderSection(inJob, inResults, inMaterial) + Contents(sections) + html +
           "<footer>Written by <code>aaxhost check --report</code>.</footer>\n</main>\n</body>\n</html>\n";
}

std::string ReportPage(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults)
{
    return ReportPage(inJob, inResults, TakeMaterial(inJob.mModule));
}
