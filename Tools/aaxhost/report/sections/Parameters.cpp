#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/HtmlText.h"

#include <fmt/format.h>
#include <utility>

namespace
{
constexpr std::size_t kMostOpen = 24;

std::string Cell(const char* inName, const std::string& inText)
{
    return fmt::format("<td data-name=\"{}\">{}</td>", inName, Escaped(inText));
}

/** What the plug-in itself writes; a dash where the parameter is the module's own. */
std::string OwnTexts(const SReportTexts* inTexts)
{
    std::string cells;
    for (int i = 0; i < 4 && inTexts == nullptr; ++i)
        cells += "<td class=\"none\">\xE2\x80\x93</td>";
    if (inTexts == nullptr)
        return cells;
    for (const auto& [name, text] :
         {std::pair<const char*, const std::string&>{"at the start", inTexts->mDefault},
          {"at 0", inTexts->mAtZero},
          {"at 0.5", inTexts->mAtHalf},
          {"at 1", inTexts->mAtOne}})
        cells += Cell(name, WithUnit(text, inTexts->mUnit));
    return cells;
}
} // namespace

std::string ParametersSection(const SReportIdentity& inIdentity, const SReportParameterTexts& inTexts)
{
    if (inIdentity.mParameters.empty())
        return Note(inIdentity.mProblem.empty() ? "There are none." : inIdentity.mProblem);
    std::string rows;
    for (const SReportParameter& parameter : inIdentity.mParameters)
        rows += fmt::format("<tr><th scope=\"row\"><code>{}</code></th><td>{}</td>{}<td class=\"number\" "
                            "data-name=\"default\">{:.3f}</td>{}<td class=\"number\" "
                            "data-name=\"steps\">{}</td><td>{}</td></tr>\n",
                            Escaped(parameter.mID), Escaped(parameter.mName),
                            OwnTexts(inTexts.Find(parameter.mID)), parameter.mDefault,
                            Cell("in the host", parameter.mText),
                            parameter.mSteps == 0 ? "no" : std::to_string(parameter.mSteps),
                            parameter.mAutomatable ? "automatable" : "not automatable");
    const std::string table =
        "<table class=\"wide\"><thead><tr><th scope=\"col\">Identifier</th><th scope=\"col\">Name</th>"
        "<th scope=\"col\">The plug-in writes at the start</th><th scope=\"col\">at 0</th>"
        "<th scope=\"col\">at 0.5</th><th scope=\"col\">at 1</th>"
        "<th scope=\"col\" class=\"number\">Default</th><th scope=\"col\">The host shows</th>"
        "<th scope=\"col\" class=\"number\">Steps</th><th "
        "scope=\"col\">Automation</th></tr></thead><tbody>\n" +
        rows + "</tbody></table>\n";
    const std::string problem = inTexts.mProblem.empty() ? std::string() : Note(inTexts.mProblem);
    const std::size_t count = inIdentity.mParameters.size();
    return problem +
           (count <= kMostOpen
                ? table
                : fmt::format("<details><summary>{} parameters</summary>\n{}</details>\n", count, table));
}
