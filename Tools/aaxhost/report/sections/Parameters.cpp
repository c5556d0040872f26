#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/HtmlText.h"

#include <fmt/format.h>

std::string ParametersSection(const SReportIdentity& inIdentity)
{
    if (inIdentity.mParameters.empty())
        return Note(inIdentity.mProblem.empty() ? "There are none." : inIdentity.mProblem);
    std::string rows;
    for (const SReportParameter& parameter : inIdentity.mParameters)
        rows += fmt::format(
            "<tr><td><code>{}</code></td><td>{}</td><td class=\"number\" data-name=\"default\">{:.3f}</td>"
            "<td data-name=\"shown\">{}</td><td class=\"number\" "
            "data-name=\"steps\">{}</td><td>{}</td></tr>\n",
            Escaped(parameter.mID), Escaped(parameter.mName), parameter.mDefault, Escaped(parameter.mText),
            parameter.mSteps == 0 ? "no" : std::to_string(parameter.mSteps),
            parameter.mAutomatable ? "automatable" : "not automatable");
    return "<table class=\"wide\"><thead><tr><th>Identifier</th><th>Name</th><th "
           "class=\"number\">Default</th><th>Shown as</th>"
           "<th class=\"number\">Steps</th><th>Automation</th></tr></thead><tbody>\n" +
           rows + "</tbody></table>\n";
}
