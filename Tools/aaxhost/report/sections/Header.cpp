#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/check/CheckSummary.h"
#include "Tools/aaxhost/check/Explanation.h"
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

/** Why it matters and what to do about it, folded. */
std::string Explained(std::string_view inCheck)
{
    const SExplanation* const explanation = FindExplanation(inCheck);
    return explanation == nullptr
               ? std::string()
               : fmt::format("<details><summary>Why it matters, and how to mend it</summary>"
                             "<p>{}</p><p>{}</p><p>{}</p></details>",
                             Escaped(explanation->mDoes), Escaped(explanation->mMatters),
                             Escaped(explanation->mMend));
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
                             "{4}</div></li>\n",
                             NameOfVerdict(result->mFinding.mVerdict), Escaped(result->mFinding.mReason),
                             Escaped(FaultInWords(*result)), Escaped(result->mCheck->mName),
                             Explained(result->mCheck->mName));
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
                          const SReportMaterial& inMaterial)
{
    const SReportIdentity& identity = inMaterial.mIdentity;
    std::string html = fmt::format("<header>\n<h1>{}</h1>\n", Escaped(TitleOf(inJob, identity)));
    if (!identity.mManufacturer.empty())
        html += fmt::format("<p>{}</p>\n", Escaped(identity.mManufacturer));
    return html + RunSection(inJob, inResults, inMaterial) + Verdict(inResults) + Findings(inResults) +
           "</header>\n";
}
