#include "Tools/aaxhost/report/HtmlTable.h"

#include "Tools/aaxhost/report/HtmlText.h"

#include <fmt/format.h>

std::string SHtmlTable::Html() const
{
    std::string html = "<table><thead><tr>";
    for (const std::string& head : mHead)
        html += fmt::format("<th scope=\"col\" class=\"number\">{}</th>", Escaped(head));
    html += "</tr></thead><tbody>\n";
    for (const auto& row : mRows)
    {
        html += "<tr>";
        for (std::size_t i = 0; i < row.size(); ++i)
            html += i == 0 ? fmt::format("<th scope=\"row\" class=\"number\">{}</th>", Escaped(row[i]))
                           : fmt::format("<td class=\"number\">{}</td>", Escaped(row[i]));
        html += "</tr>\n";
    }
    return html + "</tbody></table>\n";
}

std::string SHtmlTable::Folded(const std::string& inSummary) const
{
    return fmt::format("<details class=\"numbers\"><summary>{}</summary>\n{}</details>\n", Escaped(inSummary),
                       Html());
}
