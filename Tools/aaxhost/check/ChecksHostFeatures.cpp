#include "Tools/aaxhost/check/CDirectRig.h"
#include "Tools/aaxhost/check/StateSteps.h"
#include "Tools/aaxhost/host/CHostString.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <string>
#include <string_view>

// Whether each feature on the host's side works with this plug-in: what the host is told and shows.
namespace
{
SFinding ParameterSync(CCheckContext& ioContext)
{
    ioContext.NeedFeature("PARAMETER_SYNC");
    constexpr double rounding = 1e-5;
    const auto instance = ioContext.MakeInstance();
    const auto told = [&](const std::string& id)
    {
        double value = 0.0;
        (void)instance->Parameters().GetParameterNormalizedValue(id.c_str(), &value); // it is in the list
        return value;
    };
    for (const std::string& id : NeededParameters(*instance))
    {
        const double value = told(id) < 0.5 ? 0.75 : 0.25;
        (void)instance->UpdateParameter(id, value);
        if (std::abs(told(id) - value) > rounding)
            return SFinding::Failed(fmt::format("The host has set {} to {} and is told {:.4f}.",
                                                NameOfParameter(*instance, id), value, told(id)));
        for (int i = 0; i < 2; ++i)
            (void)instance->Parameters().UpdateParameterNormalizedRelative(id.c_str(), 0.0625);
        if (std::abs(told(id) - value - 0.125) > rounding)
            return SFinding::Failed(fmt::format("Moved twice by 0.0625 from {}, {} is at {:.4f}.", value,
                                                NameOfParameter(*instance, id), told(id)));
    }
    return SFinding::Passed();
}

bool IsPlain(std::string_view inText)
{
    return std::ranges::all_of(
               inText, [](char c) { return c >= ' ' && c <= '~'; }) &&
           !inText.starts_with(' ') && !inText.ends_with(' ');
}

/** As the plug-in called directly writes the value that it has. */
std::string WrittenDirectly(CDrivenPlugin& ioPlugin, std::int32_t inIndex)
{
    const std::string text = ioPlugin.Text(effGetParamDisplay, inIndex);
    const std::string unit = ioPlugin.Text(effGetParamLabel, inIndex);
    return unit.empty() ? text : text + " " + unit;
}

SFinding ValueTexts(CCheckContext& ioContext)
{
    ioContext.NeedFeature("VALUE_TEXTS");
    constexpr std::int32_t room = 255;
    const auto instance = ioContext.MakeInstance();
    CDirectRig direct(ioContext, ServicesOf(ioContext), StartOf(ioContext));
    bool hasText = false;
    std::int32_t index = 0;
    for (const std::string& id : NeededParameters(*instance))
    {
        const std::string written = WrittenDirectly(direct.Plugin(), index++);
        CHostString shown;
        (void)instance->Parameters().GetParameterValueString(id.c_str(), &shown, room); // it is in the list
        if (!IsPlain(written) || written.find("  ") != std::string::npos || written.empty())
            continue;
        hasText = true;
        if (shown.Get() != written)
            return SFinding::Failed(fmt::format("{} is shown as '{}', and the plug-in writes '{}'.",
                                                NameOfParameter(*instance, id), shown.Get(), written));
    }
    return hasText ? SFinding::Passed() : SFinding::Skipped("The plug-in writes no value.");
}

SFinding OutputNames(CCheckContext& ioContext)
{
    ioContext.NeedFeature("OUTPUT_NAMES");
    const std::vector<SAuxStem>& stems = ioContext.Module().Effect().mComponents.front().mAuxStems;
    if (stems.empty())
        return SFinding::Skipped("The plug-in has no output but the main one.");
    std::int32_t channel = ioContext.MakeInstance()->MainOutputChannels();
    CDirectRig direct(ioContext, ServicesOf(ioContext), StartOf(ioContext));
    for (std::size_t i = 0; i < stems.size(); ++i)
    {
        const std::string& name = stems[i].mName;
        if (name.empty())
            return SFinding::Failed(fmt::format("Auxiliary output {} has no name.", i + 1));
        const std::string label = direct.Plugin().OutputLabel(channel);
        if (!label.empty() && IsPlain(label) && name != label)
            return SFinding::Failed(fmt::format(
                "Auxiliary output {} is called '{}', and by the plug-in '{}'.", i + 1, name, label));
        channel += AAX_StemChannelCount(stems[i].mFormat);
    }
    return SFinding::Passed();
}
} // namespace

std::span<const SCheck> HostFeatureChecks()
{
    static constexpr SCheck kChecks[] = {
        {"features.parameter-sync", "PARAMETER_SYNC: the module tells the values that the host set.", 1,
         &ParameterSync},
        {"features.value-texts", "VALUE_TEXTS: values are shown as the plug-in writes them.", 1, &ValueTexts},
        {"features.output-names", "OUTPUT_NAMES: auxiliary outputs are called as the plug-in calls them.", 1,
         &OutputNames},
    };
    return kChecks;
}
