#include "Tools/aaxhost/EditorReport.h"

#include "Tools/aaxhost/player/ParseNumber.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <fmt/format.h>
#include <iterator>
#include <string_view>
#include <utility>

namespace
{
struct SCall
{
    std::string_view mName;
    std::string_view mWords;
};
constexpr SCall kCalls[] = {
    {"HandleParameterMouseDown", "mouse down"}, {"HandleParameterMouseDrag", "mouse drag"},
    {"HandleParameterMouseUp", "mouse up"},     {"PostTouchRequest", "touch"},
    {"PostSetValueRequest", "set value"},       {"PostReleaseRequest", "release"}};

// The bit 4 goes with every gesture and says nothing.
constexpr std::pair<std::uint32_t, const char*> kModifiers[] = {
    {1, "shift"}, {2, "command"}, {16, "control or secondary button"}};

/** Modifiers by name, a value in a few digits. */
std::string DescribeArgument(const std::string& inText)
{
    if (!inText.starts_with("0x"))
    {
        const auto value = ParseNumber(inText);
        return value ? fmt::format("{:.4f}", *value) : inText;
    }
    std::uint32_t bits = 0;
    (void)std::from_chars(inText.data() + 2, inText.data() + inText.size(), bits, 16); // the log's own text
    std::string names;
    for (const auto& [bit, name] : kModifiers)
        if ((bits & bit) != 0)
            names += fmt::format("{}{}", names.empty() ? "with " : ", ", name);
    return names;
}
} // namespace

CEditorReport::CEditorReport(const std::vector<SParameterInfo>& inParameters)
{
    for (const SParameterInfo& parameter : inParameters)
        mNames[parameter.mID] = parameter.mName;
}

std::string CEditorReport::Describe(const std::string& inLogLine) const
{
    constexpr std::string_view asksForSize = "SetViewSize(";
    if (inLogLine.starts_with(asksForSize))
        return fmt::format("The editor asks for {}",
                           inLogLine.substr(asksForSize.size(), inLogLine.find(')') - asksForSize.size()));
    // Name("identifier", argument)
    const std::size_t open = inLogLine.find("(\"");
    const std::size_t close = open != std::string::npos ? inLogLine.find('"', open + 2) : std::string::npos;
    const std::size_t end = close != std::string::npos ? inLogLine.find(')', close) : std::string::npos;
    const auto call = std::ranges::find(kCalls, inLogLine.substr(0, open), &SCall::mName);
    if (end == std::string::npos || call == std::end(kCalls))
        return {};
    const std::string id = inLogLine.substr(open + 2, close - open - 2);
    const std::string rest = inLogLine.substr(close + 1, end - close - 1);
    const auto name = mNames.find(id);
    std::string line = fmt::format("{} {:<16} {} {}", id, name != mNames.end() ? name->second : "",
                                   call->mWords, rest.size() > 2 ? DescribeArgument(rest.substr(2)) : "");
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}
