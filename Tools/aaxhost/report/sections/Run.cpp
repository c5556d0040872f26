#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/HtmlText.h"
#include "Tools/aaxhost/report/RunFacts.h"

#include <fmt/format.h>

std::string RunSection(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults,
                       const SReportMaterial& inMaterial)
{
    const SRunFacts facts = RunFactsOf(inJob);
    const SReportIdentity& identity = inMaterial.mIdentity;
    double seconds = 0.0;
    for (const SCheckResult& result : inResults)
        seconds += result.mSeconds;
    std::string html = "<dl class=\"facts\">\n" + Fact("Checked", facts.mDate) + Fact("With", facts.mTool) +
                       Fact("On", facts.mMachine) + Fact("Module", facts.mModule);
    if (identity.mProblem.empty())
        html += Fact("Plug-in version", identity.mVersion) + Fact("Effect", identity.mEffectID) +
                Fact("Manufacturer code", identity.mManufacturerCode) +
                Fact("Product and plug-in code", identity.mProductCode == identity.mPluginCode
                                                     ? identity.mPluginCode
                                                     : identity.mProductCode + ", " + identity.mPluginCode) +
                Fact("Reported latency", fmt::format("{} samples", identity.mLatency));
    return html + Fact("Strictness", fmt::format("{} of {}", inJob.mStrictness, kHighestStrictness)) +
           Fact("The checks took", fmt::format("{:.1f} s", seconds)) +
           Fact("The measurements took", fmt::format("{:.1f} s", inMaterial.mSeconds)) +
           "</dl>\n<p class=\"again\">Once more: <code>" + Escaped(facts.mCommand) + "</code></p>\n";
}
