#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/HtmlText.h"

#include <algorithm>
#include <fmt/format.h>

namespace
{
std::string Channels(int inCount)
{
    return inCount == 1 ? "mono" : inCount == 2 ? "stereo" : fmt::format("{} channels", inCount);
}
} // namespace

std::string StemsSection(const SReportIdentity& inIdentity)
{
    if (!inIdentity.mProblem.empty())
        return Note(inIdentity.mProblem);
    std::vector<std::string> left;
    if (inIdentity.mInputs > 0)
        left.push_back("Input, " + Channels(inIdentity.mInputs));
    for (const std::string& node : inIdentity.mMidiNodes)
        left.push_back("MIDI" + (node.empty() ? std::string() : ", " + node));
    std::vector<std::string> right{"Output, " + Channels(inIdentity.mOutputs)};
    for (const SReportStem& stem : inIdentity.mAuxStems)
        right.push_back((stem.mName.empty() ? "Auxiliary" : stem.mName) + ", " + Channels(stem.mChannels));
    const std::size_t rows = std::max({left.size(), right.size(), std::size_t{2}});
    constexpr double row = 30.0;
    const double height = 24.0 + row * static_cast<double>(rows);
    std::string svg =
        fmt::format("<svg viewBox=\"0 0 480 {}\" role=\"img\" aria-label=\"Inputs and outputs\">\n", height);
    svg += fmt::format("<rect class=\"box\" x=\"180\" y=\"12\" width=\"120\" height=\"{}\" rx=\"8\"/>"
                       "<text class=\"name middle\" x=\"240\" y=\"{}\">module</text>\n",
                       height - 24.0, height / 2.0 + 4.0);
    const auto wires =
        [&](const std::vector<std::string>& names, double from, double to, double text, const char* anchor)
    {
        const double gap = (height - 24.0) / static_cast<double>(names.size());
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            const double y = 12.0 + gap * (static_cast<double>(i) + 0.5);
            std::string name = names[i].size() > 22 ? names[i].substr(0, 21) + "\xE2\x80\xA6" : names[i];
            svg += fmt::format("<path class=\"wire\" d=\"M{0} {2:.1f}H{1}\"/><text class=\"{4}\" x=\"{3}\" "
                               "y=\"{5:.1f}\">{6}</text>\n",
                               from, to, y, text, anchor, y - 5.0, Escaped(name));
        }
    };
    wires(left, 10.0, 180.0, 10.0, "begin");
    wires(right, 300.0, 470.0, 470.0, "end");
    return Figure("As the host sees them", "<div class=\"stems\">\n" + svg + "</svg>\n</div>\n");
}
