#include "Tools/inspector/FeatureUses.h"

#include "Interfaces/VST2/AEffect.h"

#include <fmt/format.h>

std::vector<SFeatureUse> FeatureUses(const SPluginFacts& inFacts)
{
    const auto choose = [](const char* inName, bool inIsUsed, std::string inYes, std::string inNo) {
        return SFeatureUse{inName, inIsUsed, inIsUsed ? std::move(inYes) : std::move(inNo)};
    };
    const bool hasEditor = inFacts.HasFlag(effFlagsHasEditor);
    const bool hasPrograms = inFacts.HasFlag(effFlagsProgramChunks) && inFacts.mPrograms.size() >= 2;
    return {
        choose("TIME", inFacts.mAsksTime, "It asks where the song is.",
               "It did not ask where the song is in its first blocks."),
        choose("LATENCY", inFacts.mLatencyAfterBlocks != inFacts.mLatencyAtStart,
               fmt::format("Its latency is {} samples when it is opened and {} when it has rendered.",
                           inFacts.mLatencyAtStart, inFacts.mLatencyAfterBlocks),
               fmt::format("Its latency stays at {} samples in its first blocks.", inFacts.mLatencyAtStart)),
        choose("HOST_ANSWERS", inFacts.mAsksAboutHost, "It asks about its host.",
               "It did not ask about its host."),
        choose("IDLE", inFacts.mAsksIdle, "It asks for idle time.", "It did not ask for idle time."),
        choose("RESIZE", hasEditor, "It has an editor, which may change its size.", "It has no editor."),
        choose("MIDI_OUTPUT", inFacts.mSendsMidi, "It says that it sends MIDI.",
               "It does not say that it sends MIDI."),
        choose("SYSEX", inFacts.mMidiAfterOpen, "It takes MIDI.", "It takes no MIDI."),
        choose("PROGRAM_FIRST", hasPrograms,
               "It has programs and keeps its state as a chunk, which a program may overwrite.",
               "It has no chunk, or no programs that could overwrite it."),
        choose("PARAMETER_SYNC", !inFacts.mParameters.empty(), "It has parameters.", "It has no parameters."),
        choose("VALUE_TEXTS", !inFacts.mParameters.empty(), "It has parameters.", "It has no parameters."),
        choose("PARAMETER_PROPERTIES", inFacts.mDescribesParameters,
               "It says more of its parameters than their names and values.",
               "It says no more of its parameters than their names and values."),
        choose("GESTURES", hasEditor, "It has an editor, in which people turn knobs.", "It has no editor."),
        choose("BYPASS", inFacts.mOutputs > 0,
               inFacts.mBypasses ? "It bypasses itself when it is told to." : "It does not bypass itself.",
               "It makes no sound."),
        choose("PROGRAMS", inFacts.mPrograms.size() >= 2,
               fmt::format("It has {} programs.", inFacts.mPrograms.size()), "It has no choice of programs."),
        choose("OUTPUT_NAMES", inFacts.mOutputPorts.size() > 1, "It has more outputs than the main one.",
               "It has no output but the main one."),
    };
}
