#include "Tools/aaxhost/survey/SurveyPage.h"

#include "Tools/aaxhost/check/SCheck.h"
#include "Tools/aaxhost/report/HtmlChart.h"
#include "Tools/aaxhost/report/ReportStyle.h"
#include "Tools/aaxhost/survey/SurveyStyle.h"

#include <algorithm>
#include <cctype>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace
{
using Rows = std::vector<SSurveyRow>;

/** The class of the report's style that has its colours. */
const char* ColourOf(ESurveyVerdict inVerdict)
{
    switch (inVerdict)
    {
    case ESurveyVerdict::Fit: return "passed";
    case ESurveyVerdict::NotFit: return "failed";
    case ESurveyVerdict::Unknown: return "warning";
    case ESurveyVerdict::Refused: break;
    }
    return "skipped";
}

/** A path as the target of a link. */
std::string AsLink(const std::string& inPath)
{
    std::string link;
    for (const char letter : inPath)
        if (std::isalnum(static_cast<unsigned char>(letter)) != 0 ||
            std::string_view("/-_.~").find(letter) != std::string_view::npos)
            link += letter;
        else
            link += fmt::format("%{:02X}", static_cast<unsigned char>(letter));
    return link;
}

std::string NameAsLink(const SSurveyRow& inRow)
{
    const std::string name = Escaped(inRow.mName);
    return inRow.mPage.empty() ? name : fmt::format("<a href=\"{}\">{}</a>", AsLink(inRow.mPage), name);
}

/** The groups that any row has, in the order of the checks. */
std::vector<std::string> GroupsOf(const Rows& inRows)
{
    std::vector<std::string> groups;
    for (const SCheck& check : AllChecks())
        if (groups.empty() || groups.back() != check.Group())
            groups.emplace_back(check.Group());
    std::erase_if(groups,
                  [&](const std::string& group) {
                      return std::ranges::none_of(inRows, [&](const SSurveyRow& row)
                                                  { return row.mGroups.contains(group); });
                  });
    return groups;
}

std::string CountCell(int inCount, const char* inColour)
{
    return fmt::format("<td class=\"count {}\" data-value=\"{}\">{}</td>", inCount > 0 ? inColour : "none",
                       inCount, inCount);
}

/** What is worst in a group; its number sorts by how bad that is. */
std::string GroupCell(const SSurveyRow& inRow, const std::string& inGroup)
{
    const auto found = inRow.mGroups.find(inGroup);
    const SGroupCounts counts = found == inRow.mGroups.end() ? SGroupCounts() : found->second;
    struct SKind
    {
        int mCount;
        int mWeight;
        const char* mColour;
        const char* mSign;
        const char* mWord;
    };
    for (const SKind& kind :
         {SKind{counts.mFailed, 1'000'000, "failed", "\xE2\x9C\x97", "failed"},
          SKind{counts.mUnseen, 10'000, "unseen", "?", "unseen"},
          SKind{counts.mWarnings, 100, "warning", "!", counts.mWarnings == 1 ? "warning" : "warnings"}})
        if (kind.mCount > 0)
            return fmt::format("<td class=\"group {0}\" data-value=\"{1}\"><span aria-hidden=\"true\">{2} {3}"
                               "</span><span class=\"hidden\">{3} {4}</span></td>",
                               kind.mColour, kind.mWeight + kind.mCount, kind.mSign, kind.mCount, kind.mWord);
    const bool hasPassed = counts.mPassed > 0;
    return fmt::format(
        "<td class=\"group {0}\" data-value=\"{1}\"><span aria-hidden=\"true\">{2}</span><span "
        "class=\"hidden\">{0}</span></td>",
        hasPassed ? "passed" : "skipped", hasPassed ? 1 : 0, hasPassed ? "\xE2\x9C\x93" : "\xE2\x80\x93");
}

struct SColumns
{
    bool mHasUnknown = false; // a failure of which nobody knows whose it is
    std::vector<std::string> mGroups;
};

std::string Row(const SSurveyRow& inRow, const SColumns& inColumns)
{
    std::string html =
        fmt::format("<tr><th scope=\"row\" data-value=\"{}\">{}{}</th>"
                    "<td class=\"maker\" data-value=\"{}\">{}</td>"
                    "<td data-value=\"{}\"><span class=\"mark {}\">{}</span></td>",
                    Escaped(inRow.mName), NameAsLink(inRow),
                    inRow.mProduct.empty() || inRow.mProduct == inRow.mName
                        ? std::string()
                        : "<small>" + Escaped(inRow.mProduct) + "</small>",
                    Escaped(inRow.mMaker), Escaped(inRow.mMaker), NameOfVerdict(inRow.mVerdict),
                    ColourOf(inRow.mVerdict), NameOfVerdict(inRow.mVerdict));
    if (inRow.mGroups.empty())
        html +=
            fmt::format("<td class=\"why\" colspan=\"{}\">{}</td>",
                        (inColumns.mHasUnknown ? 4 : 3) + inColumns.mGroups.size(), Escaped(inRow.mReason));
    else
    {
        html += CountCell(inRow.CountFailed("module"), "failed") +
                CountCell(inRow.CountFailed("plug-in"), "failed");
        if (inColumns.mHasUnknown)
            html += CountCell(inRow.CountFailed("unknown"), "failed");
        html += CountCell(inRow.mWarnings, "warning");
        for (const std::string& group : inColumns.mGroups)
            html += GroupCell(inRow, group);
    }
    return html +
           fmt::format("<td class=\"count\" data-value=\"{0:.1f}\">{0:.1f} s</td></tr>\n", inRow.mSeconds);
}

std::string Table(const Rows& inRows)
{
    const SColumns columns{std::ranges::any_of(
                               inRows, [](const SSurveyRow& row) { return row.CountFailed("unknown") > 0; }),
                           GroupsOf(inRows)};
    const auto head = [](const char* kind, std::string_view text)
    { return fmt::format("<th scope=\"col\" class=\"{}\"><span class=\"head\">{}</span></th>", kind, text); };
    std::string html = head("words", "Plug-in") + head("words", "Maker") + head("words", "Verdict") +
                       head("count", "Failed through the module") + head("count", "Failed by itself") +
                       (columns.mHasUnknown ? head("count", "Failed, cause unknown") : std::string()) +
                       head("count", "Warnings");
    for (const std::string& group : columns.mGroups)
        html += head("group", group == "midi" ? "MIDI" : group);
    html = "<div class=\"scroll\" role=\"region\" aria-label=\"The plug-ins\" tabindex=\"0\">\n"
           "<table class=\"survey\"><thead><tr>" +
           html + head("count", "Time") + "</tr></thead>\n<tbody>\n";
    for (const SSurveyRow& row : inRows)
        html += Row(row, columns);
    return html +
           "</tbody></table>\n</div>\n"
           "<p class=\"legend\">\xE2\x9C\x97 failed, ? could not be looked at here, ! warnings, each with "
           "how many; \xE2\x9C\x93 passed, \xE2\x80\x93 nothing to look at. \xE2\x80\x9C"
           "Failed through "
           "the module\xE2\x80\x9D: the plug-in alone passes the same check. \xE2\x80\x9C"
           "Failed by "
           "itself\xE2\x80\x9D: it does so without the module.</p>\n";
}

std::string Plural(int inCount, const std::string& inWord)
{
    return fmt::format("{} {}{}", inCount, inWord, inCount == 1 ? "" : "s");
}

std::string Summary(const Rows& inRows, const SSurveyFacts& inFacts)
{
    SSurveyCounts counts = CountRows(inRows);
    using enum ESurveyVerdict;
    std::string bar;
    std::vector<std::string> parts;
    for (const auto& [verdict, words] : {std::pair<ESurveyVerdict, const char*>{NotFit, "not fit to ship"},
                                         {Unknown, "not known to be fit"},
                                         {Refused, "refused"},
                                         {Fit, "fit to ship"}})
        if (const int count = counts.mPlugins[verdict]; count > 0)
        {
            bar += fmt::format("<span class=\"{}\" style=\"flex:{}\"></span>", ColourOf(verdict), count);
            parts.push_back(fmt::format("{} {}", count, words));
        }
    const char* const colour = counts.mPlugins[NotFit] + counts.mPlugins[Refused] > 0           ? "failed"
                               : counts.mPlugins[Unknown] > 0 || inRows.size() < inFacts.mTotal ? "warning"
                                                                                                : "passed";
    std::string html = fmt::format(
        "<div class=\"verdict {}\"><strong>{} of {}</strong><div class=\"tally\" "
        "aria-hidden=\"true\">{}</div>"
        "{}.</div>\n",
        colour, counts.mPlugins[Fit], Plural(static_cast<int>(inFacts.mTotal), "plug-in") + " fit to ship",
        bar, parts.empty() ? "None is done yet" : fmt::format("{}", fmt::join(parts, ", ")));
    if (inRows.size() < inFacts.mTotal)
        html += fmt::format("<p class=\"unfinished\"><strong>Not finished:</strong> {} still to do.</p>\n",
                            Plural(static_cast<int>(inFacts.mTotal - inRows.size()), "plug-in"));
    html += "<dl class=\"facts\">\n";
    const auto fact = [&](const char* name, const std::string& value)
    { html += fmt::format("<div><dt>{}</dt><dd>{}</dd></div>\n", name, value); };
    fact("Plug-ins that fail only through the module", std::to_string(counts.mFailingThroughModule));
    fact("Plug-ins whose failures are all their own", std::to_string(counts.mFailingAlone));
    fact("Failed checks",
         fmt::format("{} only through the module, {} the plug-ins\xE2\x80\x99 own, {} cause unknown",
                     counts.mFailed["module"], counts.mFailed["plug-in"], counts.mFailed["unknown"]));
    fact("Strictness", fmt::format("{} of {}", inFacts.mStrictness, kHighestStrictness));
    fact("Products", inFacts.mWithFeatures ? "with all features" : "without features");
    return html + "</dl>\n";
}

/** Every failed check of one kind with its reason; nothing where there is none. */
std::string Failures(const Rows& inRows, const std::string& inFault, const char* inTitle)
{
    std::string items;
    int count = 0;
    for (const SSurveyRow& row : inRows)
        for (const SFailedCheck& check : row.mFailed)
            if (check.mFault == inFault)
            {
                ++count;
                items += fmt::format("<li>{}: {} <code>{}</code></li>\n", NameAsLink(row),
                                     Escaped(check.mReason), Escaped(check.mName));
            }
    if (items.empty())
        return items;
    return fmt::format("<details{}><summary>{}: {}</summary>\n<ul class=\"failures\">\n{}</ul>\n</details>\n",
                       inFault == "module" ? " open" : "", inTitle, Plural(count, "check"), items);
}
} // namespace

std::string SurveyPage(const Rows& inRows, const SSurveyFacts& inFacts)
{
    const std::string failures = Failures(inRows, "module", "Only through the module") +
                                 Failures(inRows, "unknown", "Cause unknown") +
                                 Failures(inRows, "plug-in", "The plug-ins\xE2\x80\x99 own");
    return fmt::format("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                       "<title>Survey of {}</title>\n<style>{}{}</style>\n</head>\n<body>\n<main>\n"
                       "<header>\n<h1>Survey</h1>\n",
                       Plural(static_cast<int>(inFacts.mTotal), "plug-in"), kReportStyle, kSurveyStyle) +
           Summary(inRows, inFacts) + "</header>\n<section>\n<h2>Plug-ins</h2>\n" + Table(inRows) +
           "</section>\n" +
           (failures.empty() ? std::string()
                             : "<section>\n<h2>What failed</h2>\n" + failures + "</section>\n") +
           fmt::format("<footer>Written by <code>aaxhost survey</code>, {:%Y-%m-%d %H:%M} UTC.</footer>\n"
                       "</main>\n<script>{}</script>\n</body>\n</html>\n",
                       fmt::gmtime(std::time(nullptr)), kSurveyScript);
}
