#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/HtmlText.h"
#include "Tools/aaxhost/report/RunFacts.h"

#include <fmt/format.h>

std::string RunSection(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults)
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
