#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/HtmlText.h"
#include "Tools/inspector/PluginLimits.h"

#include <algorithm>
#include <fmt/format.h>

namespace
{
std::string Needed(const SPluginLimit& inLimit)
{
    if (*inLimit.mLiftedBy == '\0')
        return "nothing passes it on";
    return fmt::format("{} <code>{}</code>", inLimit.mIsOption ? "option" : "feature", inLimit.mLiftedBy);
}

std::string Row(const SPluginLimit& inLimit)
{
    return fmt::format("<tr><th scope=\"row\">{}</th><td>{}</td><td>{}</td><td>{}</td></tr>\n",
                       Escaped(inLimit.mWhat), Escaped(inLimit.mHow), Escaped(inLimit.mReason),
                       Needed(inLimit));
}

std::string Table(const std::string& inRows)
{
    return "<table class=\"wide\"><thead><tr><th scope=\"col\">What</th><th scope=\"col\">What becomes of "
           "it</th>"
           "<th scope=\"col\">Why it concerns this plug-in</th><th scope=\"col\">What passes it on</th></tr>"
           "</thead><tbody>\n" +
           inRows + "</tbody></table>\n";
}
} // namespace

std::string LimitsSection(const SProbeResult& inPlugin, const std::vector<std::string>& inFeatures)
{
    if (!inPlugin.mFacts)
        return Note(fmt::format("What the plug-in does by itself is not known: {}.", inPlugin.mRefusal));
    std::string missing;
    std::string passedOn;
    int lifted = 0;
    for (const SPluginLimit& limit : LimitsOf(*inPlugin.mFacts))
        if (!limit.mIsOption && std::ranges::count(inFeatures, limit.mLiftedBy) > 0)
        {
            passedOn += Row(limit);
            ++lifted;
        }
        else
            missing += Row(limit);
    std::string html = missing.empty() ? Note("Nothing that is known of.") : Table(missing);
    if (lifted > 0)
        html += fmt::format(
            "<details><summary>{} more cross by this product's features</summary>\n{}</details>\n", lifted,
            Table(passedOn));
    return html;
}
