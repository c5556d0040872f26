#include "Tools/inspector/ProbedOptions.h"

#include <fmt/format.h>

namespace
{
SOptionChoice ChooseEntryVersion(const SProbeResult& inResult)
{
    if (inResult.mEntryVersion != 0)
    {
        return {
            inResult.mEntryVersion,
            fmt::format("It asks for the host's version inside its entry function, and when that is 0 {}.",
                        inResult.mRefusalOfZero)};
    }
    return {0, inResult.mAskedVersion
                   ? "It asks for the host's version inside its entry function and takes 0 for an answer."
                   : "It does not ask for the host's version inside its entry function."};
}

SOptionChoice ChoosePortsFromCounts(const SProbeResult& inResult)
{
    const SPluginFacts& facts = *inResult.mFacts;
    const bool noInputs = facts.mInputs > 0 && facts.mInputPorts.empty();
    const bool noOutputs = facts.mOutputs > 0 && facts.mOutputPorts.empty();
    if (noInputs || noOutputs)
    {
        const char* const what = noInputs && noOutputs ? "inputs and outputs"
                                 : noInputs            ? "inputs"
                                                       : "outputs";
        return {
            1,
            facts.mPortListCut
                ? fmt::format("A pin that it describes by a speaker ends its list of ports ahead of its {}, "
                              "so it would have no ports there.",
                              what)
                : fmt::format("It describes no pin of its {}, so it would have no ports there.", what)};
    }
    if (facts.mPortListCut)
        return {0, "It describes a pin by a speaker, which ends the list of ports with or without it."};
    return {0, facts.mInputs + facts.mOutputs > 0 ? "It describes its ports by pins."
                                                  : "It has no audio channels."};
}

SOptionChoice ChooseMidiInput(const SProbeResult& inResult)
{
    const SPluginFacts& facts = *inResult.mFacts;
    if (facts.mMidiBeforeOpen)
        return {0, "It says that it takes MIDI as soon as it is loaded."};
    if (facts.mMidiAfterOpen)
        return {1, "It asks for MIDI only when it is opened, which is too late for the description."};
    return {0, "It never says that it takes MIDI, so none would be sent to it."};
}

constexpr SProbedOption kOptions[] = {
    {kEntryVersionKeyword, false, nullptr, &ChooseEntryVersion},
    {kPortsFromCountsKeyword, true, "gives it ports", &ChoosePortsFromCounts},
    {"MIDI_INPUT", true, "gives it some", &ChooseMidiInput},
};
} // namespace

std::string SProbedOption::Flag() const
{
    std::string flag = mKeyword;
    for (char& byte : flag)
        byte = byte == '_' ? '-' : byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
    return "--" + flag;
}

std::span<const SProbedOption> ProbedOptions() { return kOptions; }

OptionChoices ChooseOptions(const SProbeResult& inResult)
{
    OptionChoices choices;
    for (const SProbedOption& option : kOptions)
        choices[option.mKeyword] = option.mChoose(inResult);
    return choices;
}
