#include "Tools/aaxhost/report/JUnitReport.h"

#include "Tools/aaxhost/check/CheckSummary.h"
#include "Tools/aaxhost/report/HtmlChart.h"

#include <fmt/format.h>

namespace
{
/** What stands inside a test case. */
std::string Outcome(const SCheckResult& inResult)
{
    const std::string verdict = NameOfVerdict(inResult.mFinding.mVerdict);
    const std::string fault = FaultInWords(inResult);
    const std::string said = Escaped(inResult.mFinding.mReason + (fault.empty() ? "" : " (" + fault + ")"));
    switch (inResult.mFinding.mVerdict)
    {
    case EVerdict::Failed:
    case EVerdict::Unstable: return fmt::format("<failure type=\"{}\" message=\"{}\"/>", verdict, said);
    case EVerdict::Skipped:
    case EVerdict::Unseen: return fmt::format("<skipped message=\"{}\"/>", said);
    case EVerdict::Warning: return fmt::format("<system-out>{}: {}</system-out>", verdict, said);
    case EVerdict::Passed: break;
    }
    return {};
}

std::string Suite(const SCheckedModule& inModule)
{
    const SCheckCounts counts = CountVerdicts(inModule.mResults);
    std::string cases;
    double seconds = 0.0;
    for (const SCheckResult& result : inModule.mResults)
    {
        cases += fmt::format("    <testcase classname=\"{}\" name=\"{}\" time=\"{:.3f}\">{}</testcase>\n",
                             result.mCheck->Group(), Escaped(result.mCheck->mName), result.mSeconds,
                             Outcome(result));
        seconds += result.mSeconds;
    }
    return fmt::format("  <testsuite name=\"{}\" tests=\"{}\" failures=\"{}\" errors=\"0\" skipped=\"{}\" "
                       "time=\"{:.3f}\">\n{}  </testsuite>\n",
                       Escaped(inModule.mJob.mModule), inModule.mResults.size(),
                       counts.mFailed + counts.mUnstable, counts.mSkipped + counts.mUnseen, seconds, cases);
}
} // namespace

std::string JUnitReport(const std::vector<SCheckedModule>& inModules)
{
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n";
    for (const SCheckedModule& module : inModules)
        xml += Suite(module);
    return xml + "</testsuites>\n";
}
