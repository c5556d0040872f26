#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/HtmlText.h"

#include <algorithm>
#include <cstdlib>
#include <fmt/format.h>

namespace
{
constexpr std::size_t kMostOpen = 24;

std::string Cell(const char* inName, const std::string& inText)
{
    return fmt::format("<td data-name=\"{}\">{}</td>", inName, Escaped(inText));
}

/** What the plug-in itself writes; a dash where the parameter is the module's own. */
std::string OwnTexts(const SReportParameter& inParameter, const SReportParameterTexts& inTexts)
{
    char* end = nullptr;
    const auto index = static_cast<std::size_t>(std::strtoul(inParameter.mID.c_str(), &end, 10));
    const bool isPlugins =
        end != inParameter.mID.c_str() && *end == '\0' && index < inTexts.mParameters.size();
    const SReportTexts own = isPlugins ? inTexts.mParameters[index] : SReportTexts{};
    const auto shown = [&](const std::string& text)
    { return !isPlugins ? std::string("\xE2\x80\x93") : WithUnit(text, own.mUnit); };
    return Cell("at the start", shown(own.mDefault)) + Cell("at 0", shown(own.mAtZero)) +
           Cell("at 0.5", shown(own.mAtHalf)) + Cell("at 1", shown(own.mAtOne));
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
                            Escaped(parameter.mID), Escaped(parameter.mName), OwnTexts(parameter, inTexts),
                            parameter.mDefault, Cell("in the host", parameter.mText),
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
