#include "Tools/aaxhost/check/CDirectRig.h"
#include "Tools/aaxhost/check/Comparison.h"
#include "Tools/aaxhost/check/EditorSteps.h"
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
    (void)NeededParameters(*instance);
    for (const std::string& id : PluginParameters(*instance))
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
    for (const std::string& id : PluginParameters(*instance))
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

/** Of a control with steps, as the plug-in says; 0 of one without, or with more than values tell apart. */
std::int64_t StepsSaid(const VstParameterProperties& inProperties)
{
    if ((inProperties.flags & kVstParameterIsSwitch) != 0)
        return 2;
    const std::int64_t range = std::int64_t{inProperties.maxInteger} - inProperties.minInteger;
    const bool hasRange = (inProperties.flags & kVstParameterUsesIntegerMinMax) != 0;
    return hasRange && range > 0 && range < 1 << 24 ? range + 1 : 0;
}

SFinding ParameterProperties(CCheckContext& ioContext)
{
    ioContext.NeedFeature("PARAMETER_PROPERTIES");
    const auto instance = ioContext.MakeInstance();
    CDirectRig direct(ioContext, ServicesOf(ioContext), StartOf(ioContext));
    CDrivenPlugin& plugin = direct.Plugin();
    const std::vector<SParameterInfo> list = instance->ListParameters();
    const auto count = std::min(static_cast<std::int32_t>(list.size()), plugin.Effect().numParams);
    const auto canBeAutomated = [&](std::int32_t index)
    { return plugin.Dispatch(effCanBeAutomated, index) != 0; };
    bool saysAutomated = false;
    for (std::int32_t i = 0; i < count; ++i)
        saysAutomated = saysAutomated || canBeAutomated(i);
    bool says = saysAutomated;
    for (std::int32_t i = 0; i < count; ++i)
    {
        const SParameterInfo& info = list[static_cast<std::size_t>(i)];
        const auto properties = plugin.ParameterProperties(i);
        says = says || properties;
        const std::int64_t steps = properties ? StepsSaid(*properties) : 0;
        if (info.mDiscrete != (steps > 0) || (steps > 0 && info.mSteps != steps))
            return SFinding::Failed(fmt::format("{} has {} steps, and by the plug-in {}.",
                                                NameOfParameter(*instance, info.mID),
                                                info.mDiscrete ? info.mSteps : 0, steps));
        if (saysAutomated && info.mAutomatable != canBeAutomated(i))
            return SFinding::Failed(fmt::format(
                "{} can {}be automated, and by the plug-in it can{}.", NameOfParameter(*instance, info.mID),
                info.mAutomatable ? "" : "not ", info.mAutomatable ? "not" : ""));
    }
    return says ? SFinding::Passed() : SFinding::Skipped("The plug-in says nothing of its parameters.");
}

SFinding WholeGestures(CCheckContext& ioContext)
{
    ioContext.NeedFeature("GESTURES");
    const auto window = NeedWindow(ioContext);
    const auto instance = ioContext.MakeInstance();
    {
        const auto view = OpenView(*instance, *window);
        NeedEditor(*view);
        for (const std::string& id : AutomatableParameters(*instance))
            TrySet(*instance, id, 0.4);
        Tick(*view, 3);
    }
    for (int i = 0; i < 3; ++i)
        (void)instance->Parameters().TimerWakeup(); // a host goes on whatever it answers
    if (ioContext.Log().Count("HandleParameterMouseDown") == 0)
        return SFinding::Skipped("The plug-in begins no edit by itself.");
    for (const SParameterInfo& info : instance->ListParameters())
        if (instance->Host().Automation().IsTouched(info.mID))
            return SFinding::Failed(fmt::format("The editor is closed after {} begun and {} ended edits, and "
                                                "the host still takes {} for held.",
                                                ioContext.Log().Count("HandleParameterMouseDown"),
                                                ioContext.Log().Count("HandleParameterMouseUp"),
                                                NameOfParameter(*instance, info.mID)));
    return SFinding::Passed();
}

// ---- Programs

constexpr const char* kProgramID = "Program";

void ChooseProgram(CDirectRig& ioRig, std::int32_t inProgram)
{
    for (const std::int32_t opcode : {effBeginSetProgram, effSetProgram, effEndSetProgram})
        (void)ioRig.Plugin().Dispatch(opcode, 0, opcode == effSetProgram ? inProgram : 0);
}

double ProgramValue(std::int32_t inProgram, std::int32_t inPrograms)
{
    return static_cast<double>(inProgram) / (inPrograms - 1);
}

/** @return what the first of its names that the host sees otherwise is; empty when there is none. */
std::string OtherProgramName(CInstance& ioInstance, CDrivenPlugin& ioPlugin, std::int32_t inPrograms)
{
    for (std::int32_t i = 0; i < inPrograms; ++i)
    {
        const std::string name = ioPlugin.Text(effGetProgramNameIndexed, i);
        CHostString shown;
        (void)ioInstance.Parameters().GetParameterStringFromValue(kProgramID, ProgramValue(i, inPrograms),
                                                                  &shown, 255); // it is in the list
        if (IsPlain(name) && !name.empty() && shown.Get() != name)
            return fmt::format("Program {} is called '{}', and by the plug-in '{}'.", i, shown.Get(), name);
    }
    return {};
}

SFinding Programs(CCheckContext& ioContext)
{
    ioContext.NeedFeature("PROGRAMS");
    constexpr std::int32_t most = 128; // are looked at
    const SServices services = ServicesOf(ioContext);
    const SStart start = StartOf(ioContext);
    CDirectRig direct(ioContext, services, start);
    const std::int32_t programs = direct.Plugin().Effect().numPrograms;
    if (programs < 2)
        return SFinding::Skipped("The plug-in has no choice of programs.");
    const auto instance = ioContext.MakeInstance();
    const SParameterInfo last = instance->ListParameters().back();
    if (last.mID != kProgramID || last.mSteps != programs || !last.mDiscrete)
        return SFinding::Failed(
            fmt::format("The plug-in has {} programs, and the last parameter is '{}' with {} steps.",
                        programs, last.mID, last.mSteps));
    if (const std::string other = OtherProgramName(*instance, direct.Plugin(), std::min(programs, most));
        !other.empty())
        return SFinding::Failed(other);
    const std::int32_t chosen = direct.Plugin().Dispatch(effGetProgram) == 1 ? 0 : 1; // the last may be empty
    const auto plain = [](auto& rig) { rig.Play(1.0); };
    return Compare({[&]
                    {
                        return HearPlugin(ioContext, services, start,
                                          [&](CDirectRig& rig)
                                          {
                                              ChooseProgram(rig, chosen);
                                              plain(rig);
                                          });
                    },
                    [&] { return HearPlugin(ioContext, services, start, plain); },
                    [&]
                    {
                        return HearModule(ioContext,
                                          [&](CRig& rig)
                                          {
                                              (void)rig.Instance().UpdateParameter(
                                                  kProgramID, ProgramValue(chosen, programs));
                                              (void)DeliverAll(rig.Instance()); // seen in what is heard
                                              plain(rig);
                                          });
                    },
                    "Another program changes nothing that it renders and saves.",
                    "With another program the module is not as the plug-in called directly that has it"});
}

// ---- Bypass

constexpr double kSecondsOfBypass = 0.5;

void SwitchBypass(CDirectRig& ioRig, bool inIsOn)
{
    (void)ioRig.Plugin().Dispatch(effSetBypass, 0, inIsOn ? 1 : 0); // it says that it can
}

void SwitchBypass(CRig& ioRig, bool inIsOn)
{
    (void)ioRig.Instance().UpdateParameter(ioRig.Instance().MasterBypassID(), inIsOn ? 1.0 : 0.0);
}

template <class Rig>
void PlayWith(Rig& ioRig, bool inIsBypassed)
{
    ioRig.Play(kSecondsOfBypass);
    SwitchBypass(ioRig, inIsBypassed);
    ioRig.Play(kSecondsOfBypass);
    SwitchBypass(ioRig, false);
    ioRig.Play(kSecondsOfBypass);
}

SFinding BypassByTheModule(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    rig.Play(kSecondsOfBypass);
    SwitchBypass(rig, true);
    rig.Play(kSecondsOfBypass);
    const std::int64_t latency = rig.Instance().Host().Controller().State().mSignalLatency;
    rig.RenderFrames(latency, 512); // until the input is heard
    const std::int64_t start = rig.Position();
    rig.Record();
    rig.Play(kSecondsOfBypass);
    const auto main = static_cast<std::size_t>(rig.Instance().MainOutputChannels());
    const SignalSource input = Noise(0.25F); // of `Play`
    for (std::size_t channel = 0; channel < rig.Recording().size(); ++channel)
    {
        const bool isHeard = channel < main && rig.Inputs() > 0;
        const std::vector<float>& heard = rig.Recording()[channel];
        for (std::size_t i = 0; i < heard.size(); ++i)
        {
            const std::int64_t frame = start + static_cast<std::int64_t>(i) - latency;
            const float wanted = isHeard ? input(frame, std::min(channel, rig.Inputs() - 1)) : 0.0F;
            if (heard[i] != wanted)
                return SFinding::Failed(fmt::format(
                    "Bypassed, channel {} has {} where the input of {} frames ago is {}, at frame {}.",
                    channel + 1, heard[i], latency, wanted, start + static_cast<std::int64_t>(i)));
        }
    }
    return SFinding::Passed();
}

SFinding Bypass(CCheckContext& ioContext)
{
    ioContext.NeedFeature("BYPASS");
    const SServices services = ServicesOf(ioContext);
    const SStart start = StartOf(ioContext);
    if (!CDirectRig(ioContext, services, start).Plugin().CanDo("bypass"))
        return BypassByTheModule(ioContext);
    const auto around = [](auto& rig) { PlayWith(rig, true); };
    const auto through = [](auto& rig) { PlayWith(rig, false); };
    return Compare({[&] { return HearPlugin(ioContext, services, start, around); },
                    [&] { return HearPlugin(ioContext, services, start, through); },
                    [&] { return HearModule(ioContext, around); },
                    "The plug-in says that it bypasses itself, and sounds the same when it is told to.",
                    "Bypassed, the module is not as the plug-in called directly that is told to bypass "
                    "itself"});
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
         &ParameterSync, EAlone::Compared},
        {"features.value-texts", "VALUE_TEXTS: values are shown as the plug-in writes them.", 1, &ValueTexts,
         EAlone::Compared},
        {"features.parameter-properties",
         "PARAMETER_PROPERTIES: parameters have the steps that the plug-in says, and are automated as it "
         "says.",
         1, &ParameterProperties, EAlone::Compared},
        {"features.gestures", "GESTURES: no parameter stays held when the editor is closed.", 1,
         &WholeGestures, EAlone::Compared},
        {"features.programs", "PROGRAMS: the last parameter chooses the plug-in's programs.", 1, &Programs,
         EAlone::Compared},
        {"features.bypass", "BYPASS: the input is passed on, as late as the plug-in's output.", 1, &Bypass,
         EAlone::Compared},
        {"features.output-names", "OUTPUT_NAMES: auxiliary outputs are called as the plug-in calls them.", 1,
         &OutputNames, EAlone::Compared},
    };
    return kChecks;
}
