#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/check/CheckSummary.h"
#include "Tools/aaxhost/report/HtmlText.h"

#include <algorithm>
#include <fmt/format.h>

namespace
{
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
} // namespace

std::string ChecksSection(const std::vector<SCheckResult>& inResults)
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
        html += fmt::format("<h3 class=\"group\">{}</h3>\n", Heading(group));
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
