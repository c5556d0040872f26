#include "Tools/aaxhost/report/CheckReport.h"

#include "Tools/aaxhost/check/CheckSummary.h"
#include "Tools/aaxhost/report/HtmlText.h"
#include "Tools/aaxhost/report/ReportStyle.h"
#include "Tools/aaxhost/report/sections/Sections.h"

#include <fmt/format.h>

std::string ReportPage(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults,
                       const SReportMaterial& inMaterial)
{
    return fmt::format("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                       "<title>{}: {}</title>\n<style>{}</style>\n</head>\n<body>\n<main>\n",
                       Escaped(TitleOf(inJob, inMaterial.mIdentity)), Escaped(FitnessInWords(inResults)),
                       kReportStyle) +
           HeaderSection(inJob, inResults, inMaterial.mIdentity) +
           Section("Stems and buses", StemsSection(inMaterial.mIdentity)) +
           Section("Checks", ChecksSection(inResults)) +
           Section("Test signals", SignalsSection(inMaterial.mSignals)) +
           Section("Latency", LatencySection(inMaterial, inResults)) +
           Section("Automation", AutomationSection(inMaterial.mAutomation)) +
           Section("Cost", CostSection(inMaterial.mCost)) +
           Section("Parameters", ParametersSection(inMaterial.mIdentity)) +
           Section("Editor", EditorSection(inMaterial.mEditor)) +
           Section("This run", RunSection(inJob, inResults)) +
           "<footer>Written by <code>aaxhost check --report</code>.</footer>\n</main>\n</body>\n</html>\n";
}

std::string ReportPage(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults)
{
    return ReportPage(inJob, inResults, MeasureModule(inJob.mModule));
}
