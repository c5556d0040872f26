#include "Tools/inspector/PluginLimits.h"

#include "Interfaces/VST2/AEffect.h"
#include "Source/AAX_SInstrumentSetupInfo.h"
#include "Tools/inspector/FeatureUses.h"

#include <algorithm>
#include <fmt/format.h>
#include <string_view>

namespace
{
/** A row of docs/limits.md. Where a feature lifts it, it concerns the plug-ins that make use of the feature.
 */
struct SRow
{
    const char* mWhat;
    const char* mHow;
    const char* mFeature;
    // Where no feature does: @return why it concerns the plug-in; empty: it does not.
    std::string (*mReason)(const SPluginFacts&) = nullptr;
    const char* mOption = ""; // that lifts it
};

std::string TooManyOutputs(const SPluginFacts& inFacts)
{
    const std::size_t most = 1 + kMaxAuxOutputStems;
    return inFacts.mOutputPorts.size() > most ? fmt::format("It has {} output ports, of which {} are heard.",
                                                            inFacts.mOutputPorts.size(), most)
                                              : std::string();
}

std::string NamesSpeakers(const SPluginFacts& inFacts)
{
    return inFacts.mPortListCut ? "It describes a pin by a speaker." : "";
}

std::string DescribesNoPins(const SPluginFacts& inFacts)
{
    const bool none = (inFacts.mInputs > 0 && inFacts.mInputPorts.empty()) ||
                      (inFacts.mOutputs > 0 && inFacts.mOutputPorts.empty());
    return none && !inFacts.mPortListCut ? "It describes no pin of its inputs or outputs." : "";
}

std::string AsksForMidiLate(const SPluginFacts& inFacts)
{
    return inFacts.mMidiAfterOpen && !inFacts.mMidiBeforeOpen ? "It asks for MIDI only when it is opened."
                                                              : "";
}

std::string KeepsProgramsWithoutAChunk(const SPluginFacts& inFacts)
{
    return !inFacts.HasFlag(effFlagsProgramChunks) && inFacts.mPrograms.size() >= 2
               ? fmt::format("It has {} programs and no chunk.", inFacts.mPrograms.size())
               : std::string();
}

constexpr SRow kRows[] = {
    {"Auxiliary outputs",
     "Every further stereo or mono port is a stem; the 34th port and later ones are rendered and heard by "
     "nobody.",
     nullptr, &TooManyOutputs},
    {"Names of auxiliary stems",
     "Output ports are listed without their labels, so hosts show a blank or a number.", "OUTPUT_NAMES"},
    {"Ports of more than two channels",
     "A pin that names a speaker arrangement ends the list: ports are mono or stereo.", nullptr,
     &NamesSpeakers},
    {"Ports of a plug-in that describes no pins",
     "PORTS_FROM_COUNTS pairs its channels into stereo ports; without it there are none. Most plug-ins need "
     "it.",
     nullptr, &DescribesNoPins, "PORTS_FROM_COUNTS"},
    {"MIDI input of a plug-in that asks for it late",
     "The description is over when a plug-in asks inside its open call: MIDI_INPUT.", nullptr,
     &AsksForMidiLate, "MIDI_INPUT"},
    {"MIDI output", "The description has an input node only.", "MIDI_OUTPUT"},
    {"System exclusive messages",
     "A packet holds four bytes; each piece of a longer message goes to the plug-in as if it were a whole "
     "short one.",
     "SYSEX"},
    {"Text of a value",
     "Shown is the value from 0 to 1 with two decimals, not the plug-in's own text and unit.", "VALUE_TEXTS"},
    {"Steps, switches, lists", "Every parameter is continuous, whatever the plug-in says of it.",
     "PARAMETER_PROPERTIES"},
    {"Short names", "Displays of a few characters cut the whole name.", "PARAMETER_PROPERTIES"},
    {"The value that the module reports",
     "The host has the value that it sent; the module takes the plug-in's own over when the state is saved, "
     "compared or loaded.",
     "PARAMETER_SYNC"},
    {"Relative changes",
     "They start from the value that the module reports, which follows with the state only: the first moves "
     "the parameter, and every further one asks for the same value again.",
     "PARAMETER_SYNC"},
    {"Master bypass and gain: their values",
     "What the host sets them to goes to the plug-in, which has no such parameter; both report their start "
     "values for ever.",
     "PARAMETER_SYNC"},
    {"Touch and release in a drag",
     "A parameter is let go of between any two values of a drag, so latching automation sees many short "
     "gestures and not one.",
     "GESTURES"},
    {"A gesture that is open when its window closes",
     "The view container goes first: the mouse-up that a plug-in sends while its editor closes reaches "
     "nobody.",
     "GESTURES"},
    {"The host's compare button", "Values of the host are not counted as changes.", "PARAMETER_SYNC"},
    {"Master bypass", "It is a parameter and a packet; nothing routes the sound around the plug-in.",
     "BYPASS"},
    {"State without a chunk",
     "Every parameter's value of the current program; the other programs and their names are lost.", nullptr,
     &KeepsProgramsWithoutAChunk},
    {"A program set after the chunk",
     "The program's number follows the chunk. Where setting a program loads its stored values, they "
     "overwrite what the chunk restored, and edits made since the program was chosen are lost.",
     "PROGRAM_FIRST"},
    {"Program names and changes", "AAX has no programs; a plug-in hears program changes as MIDI only.",
     "PROGRAMS"},
    {"Tempo, position, playing",
     "Given with each block, the tempo in single precision and the musical position as that within a 4/4 "
     "bar; no flag says that they are valid, so plug-ins that look at the flags ignore both.",
     "TIME"},
    {"Meter, loop, time code, validity flags", "Only the playing flag is ever set.", "TIME"},
    {"Latency", "The initial delay is reported once; one that is known after the first block only is not.",
     "LATENCY"},
    {"Another size that the editor wishes for",
     "The wish is answered with 0; a host that asks for the size again learns it.", "RESIZE"},
    {"Idle time outside the editor", "A plug-in may ask for it; only an open editor is idled.", "IDLE"},
    {"Questions to the host (canDo, vendor, offline, tail, speaker arrangement)",
     "Answered with 0, as a host that can none of it.", "HOST_ANSWERS"},
};
} // namespace

std::vector<SPluginLimit> LimitsOf(const SPluginFacts& inFacts)
{
    const std::vector<SFeatureUse> uses = FeatureUses(inFacts);
    std::vector<SPluginLimit> limits;
    for (const SRow& row : kRows)
    {
        if (row.mFeature == nullptr)
        {
            if (std::string reason = row.mReason(inFacts); !reason.empty())
                limits.push_back({row.mWhat, row.mHow, row.mOption, *row.mOption != '\0', std::move(reason)});
            continue;
        }
        const auto use = std::ranges::find_if(uses, [&](const SFeatureUse& feature)
                                              { return std::string_view(feature.mName) == row.mFeature; });
        if (use != uses.end() && use->mIsUsed)
            limits.push_back({row.mWhat, row.mHow, row.mFeature, false, use->mReason});
    }
    return limits;
}
