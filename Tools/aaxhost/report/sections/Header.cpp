#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/check/CheckSummary.h"
#include "Tools/aaxhost/report/HtmlText.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>

namespace
{
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
} // namespace

std::string TitleOf(const SCheckJob& inJob, const SReportIdentity& inIdentity)
{
    if (!inIdentity.mName.empty())
        return inIdentity.mName;
    const std::filesystem::path path(inJob.mModule);
    return (path.has_filename() ? path : path.parent_path()).stem().string();
}

std::string HeaderSection(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults,
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
