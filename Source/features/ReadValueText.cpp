#include "Source/features/ReadValueText.h"

#include "Source/features/PluginText.h"
#include "Source/plugins/CVst2Plugin.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace
{
/** Of a text that a host may show, display and unit each. */
constexpr std::size_t kMostBytes = 256;
/** The interface has room for 8 characters; plug-ins write more, without an end too. */
constexpr std::size_t kRoom = 16384;
} // namespace

std::string ReadPluginText(const CVst2Plugin& inPlugin, std::int32_t inOpcode, long inIndex)
{
    std::array<char, kRoom> text;
    const auto shown = text.begin() + kMostBytes;
    std::fill(text.begin(), shown, '\0');
    // Many plug-ins answer 0 and write all the same.
    (void)inPlugin.Dispatch(inOpcode, static_cast<std::int32_t>(inIndex), 0, text.data());
    return CleanText({text.begin(), std::find(text.begin(), shown, '\0')});
}

std::string ReadValueText(const CVst2Plugin& inPlugin, long inIndex)
{
    std::string text = ReadPluginText(inPlugin, effGetParamDisplay, inIndex);
    const std::string unit = ReadPluginText(inPlugin, effGetParamLabel, inIndex);
    if (!text.empty() && !unit.empty())
        text += ' ';
    return text + unit;
}
