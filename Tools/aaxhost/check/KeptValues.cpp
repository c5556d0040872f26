#include "Tools/aaxhost/check/KeptValues.h"

#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/check/Comparison.h"
#include "Tools/aaxhost/check/StateSteps.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace
{
/** Empty where it cannot be told. */
std::string TextOf(CDrivenPlugin& ioPlugin, const SMoved& inMoved, double inValue)
{
    if (std::isnan(inValue))
        return {};
    ioPlugin.SetParameter(inMoved.mIndex, static_cast<float>(inValue));
    const std::string text = ioPlugin.Text(effGetParamDisplay, inMoved.mIndex);
    const std::string unit = ioPlugin.Text(effGetParamLabel, inMoved.mIndex);
    return unit.empty() ? text : text + " " + unit;
}

/** "0.2172 ('-13 dB')" */
std::string Written(double inValue, const std::string& inText)
{
    return inText.empty() ? fmt::format("{:.4f}", inValue) : fmt::format("{:.4f} ('{}')", inValue, inText);
}

/** Whether the plug-in's chunk loses its values only because a program is chosen after it. */
bool IsOverwrittenByProgram(CDrivenPlugin& ioPlugin, const SInstanceState& inSaved,
                            const std::vector<double>& inBefore)
{
    std::vector<char> chunk = PluginChunkOf(inSaved);
    if (ioPlugin.Effect().numPrograms < 2 || chunk.empty())
        return false;
    const auto keeps = [&]
    {
        for (std::size_t i = 0; i < inBefore.size(); ++i)
            if (std::abs(static_cast<double>(ioPlugin.GetParameter(static_cast<std::int32_t>(i))) -
                         inBefore[i]) > kSameValue)
                return false;
        return true;
    };
    const auto program = ioPlugin.Dispatch(effGetProgram);
    const bool keepsAlone = ioPlugin.SetChunk(0, chunk) && keeps();
    (void)ioPlugin.Dispatch(effSetProgram, 0, program); // the interface gives the result no meaning
    return keepsAlone && !keeps();
}

/** Of a new instance at some values. */
Sound SoundAt(CCheckContext& ioContext, const std::vector<double>& inValues)
{
    CRig rig(ioContext);
    SetValues(rig.Instance(), inValues);
    rig.RenderSeconds(0.2);
    rig.Record();
    rig.Play(0.2);
    return rig.Recording();
}

bool AreAlike(const Sound& inFirst, const Sound& inSecond)
{
    constexpr float same = 1e-3F; // what a chunk restores differs a little
    return std::ranges::equal(inFirst, inSecond,
                              [](const auto& first, const auto& second) {
                                  return std::ranges::equal(first, second,
                                                            [](float a, float b)
                                                            { return std::abs(a - b) <= same; });
                              });
}

/** Not where the plug-in never sounds the same twice. */
bool SoundsOtherwise(CCheckContext& ioContext, const std::vector<double>& inBefore,
                     const std::vector<double>& inNow)
{
    const Sound before = SoundAt(ioContext, inBefore);
    return !AreAlike(before, SoundAt(ioContext, inNow)) && AreAlike(before, SoundAt(ioContext, inBefore));
}
} // namespace

SFinding KeptOrLost(CCheckContext& ioContext, CInstance& ioInstance, const SInstanceState& inSaved,
                    const std::vector<double>& inBefore, const std::string& inWhere)
{
    const std::vector<SMoved> moved = MovedParameters(ioInstance, inBefore);
    if (moved.empty())
        return SFinding::Passed();
    CDrivenPlugin plugin(kHostVersion);
    const bool isOpen = plugin.Open(ioContext.Module().PluginPath(), static_cast<float>(kCheckRate)).empty();
    const auto sentence = [&](const SMoved& parameter, const std::string& before, const std::string& now)
    {
        return fmt::format("{}{} was saved at {} and comes back at {}", inWhere, parameter.mName,
                           Written(parameter.mBefore, before), Written(parameter.mNow, now));
    };
    std::string alike;
    for (const SMoved& parameter : moved)
    {
        const std::string before = isOpen ? TextOf(plugin, parameter, parameter.mBefore) : std::string();
        const std::string now = isOpen ? TextOf(plugin, parameter, parameter.mNow) : std::string();
        if (before.empty() || before != now)
        {
            const bool isProgram = isOpen && !ioContext.HasFeature("PROGRAM_FIRST") &&
                                   IsOverwrittenByProgram(plugin, inSaved, inBefore);
            return SFinding::Failed(sentence(parameter, before, now) + "." +
                                    (isProgram
                                         ? " The program that is chosen after the chunk overwrites it: the "
                                           "feature PROGRAM_FIRST mends that."
                                         : ""));
        }
        if (alike.empty())
            alike = sentence(parameter, before, now);
    }
    if (SoundsOtherwise(ioContext, inBefore, Values(ioInstance)))
        return SFinding::Failed(alike + ", and does not sound the same.");
    return SFinding::Passed(alike + ".");
}
