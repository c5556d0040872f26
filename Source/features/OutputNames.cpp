#include "Source/features/OutputNames.h"

#include "Source/features/PluginText.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/CopyBounded.h"
#include "Source/plugins/SRoomyRecord.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace
{
std::string LabelOf(const CVst2Plugin& inPlugin, long inPin)
{
    SRoomyRecord<VstPinProperties> answer;
    if (inPlugin.Dispatch(effGetOutputProperties, static_cast<std::int32_t>(inPin), 0, &answer) == 0)
        return {};
    const auto& label = answer.mRecord.label; // may fill its field without a terminator
    const auto end = std::ranges::find(label, '\0');
    return CleanText({std::begin(label), end});
}
} // namespace

void NameOutput(const CVst2Plugin& inPlugin, long inFirstChannel, long inChannels, std::span<char> outName)
{
    std::string name = LabelOf(inPlugin, inFirstChannel);
    if (name.empty())
    {
        name.append("Out ").append(std::to_string(inFirstChannel + 1));
        if (inChannels > 1)
            name.append("-").append(std::to_string(inFirstChannel + inChannels));
    }
    CopyBounded(outName, name.c_str());
}
