#include "Source/features/ParameterProperties.h"

#include "Source/features/PluginText.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/SRoomyRecord.h"

#include <algorithm>
#include <iterator>

namespace
{
/** More steps than normalized values of 32 bits can tell apart are none. */
constexpr std::int64_t kMostSteps = 1 << 24;

std::uint32_t StepsOf(const VstParameterProperties& inProperties) noexcept
{
    if ((inProperties.flags & kVstParameterIsSwitch) != 0)
        return 2;
    if ((inProperties.flags & kVstParameterUsesIntegerMinMax) == 0)
        return 0;
    const std::int64_t steps = std::int64_t{inProperties.maxInteger} - inProperties.minInteger + 1;
    return steps >= 2 && steps <= kMostSteps ? static_cast<std::uint32_t>(steps) : 0;
}
} // namespace

SParameterProperties ReadParameterProperties(const CVst2Plugin& inPlugin, long inIndex)
{
    SRoomyRecord<VstParameterProperties> answer;
    if (inPlugin.Dispatch(effGetParameterProperties, static_cast<std::int32_t>(inIndex), 0, &answer) != 1)
        return {};
    const auto& label = answer.mRecord.shortLabel; // may fill its field without a terminator
    return {CleanText({std::begin(label), std::ranges::find(label, '\0')}), StepsOf(answer.mRecord)};
}

bool CanBeAutomated(const CVst2Plugin& inPlugin, long inIndex)
{
    return inPlugin.Dispatch(effCanBeAutomated, static_cast<std::int32_t>(inIndex)) != 0;
}

bool AnswersAutomation(const CVst2Plugin& inPlugin, long inParameters)
{
    for (long i = 0; i < inParameters; ++i)
        if (CanBeAutomated(inPlugin, i))
            return true;
    return false;
}
