#include "Tools/aaxhost/CommandRender.h"

#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/aaxhost/lib/CInstance.h"
#include "Tools/aaxhost/lib/CModule.h"
#include "Tools/aaxhost/lib/ParseNumber.h"
#include "Tools/aaxhost/lib/Renderer.h"
#include "Tools/aaxhost/lib/StateFile.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fmt/format.h>
#include <memory>
#include <optional>
#include <system_error>

namespace
{
constexpr int kDefaultRate = 44100;     // Hz
constexpr double kDefaultSeconds = 5.0; // when nothing else gives a length
constexpr double kMidiTailSeconds = 2.0;

struct SRenderOptions
{
    std::string mModule;
    std::string mOutput;
    std::string mInput;
    std::string mMidi;
    std::optional<double> mSeconds;
    std::optional<int> mRate; // Hz
    int mBlock = 512;         // frames
    double mTempo = 120.0;
    bool mStopped = false;
    bool mMainOnly = false;
    std::string mState;
    std::string mSaveState;
    EAnswers mAnswers = EAnswers::Late;
    std::vector<std::string> mSets;
    std::vector<std::string> mAutomations;
};

/** What the files that the options name hold. */
struct SRenderMaterial
{
    std::optional<SAudio> mInput;
    std::vector<SMidiEvent> mMidi;
    std::vector<SAutomationLane> mAutomation;
    std::optional<SInstanceState> mState;
    int mRate = kDefaultRate; // Hz
};

COutcome<SRenderMaterial> ReadMaterial(const SRenderOptions& inOptions)
{
    SRenderMaterial material;
    if (!inOptions.mInput.empty())
    {
        auto audio = ReadAudioFile(inOptions.mInput);
        if (!audio)
            return audio.Problem();
        material.mInput = std::move(*audio);
        material.mRate = material.mInput->mRate;
        if (inOptions.mRate && *inOptions.mRate != material.mRate)
            return SProblem{fmt::format("'{}' is at {} Hz and cannot be rendered at {} Hz.", inOptions.mInput,
                                        material.mRate, *inOptions.mRate)};
    }
    material.mRate = inOptions.mRate.value_or(material.mRate);
    if (!inOptions.mMidi.empty())
    {
        auto midi = ReadMidiFile(inOptions.mMidi);
        if (!midi)
            return midi.Problem();
        material.mMidi = std::move(*midi);
    }
    if (!inOptions.mState.empty())
    {
        auto state = ReadStateFile(inOptions.mState);
        if (!state)
            return state.Problem();
        material.mState = std::move(*state);
    }
    for (const std::string& text : inOptions.mAutomations)
    {
        const SAssignment parts = SplitAssignment(text);
        auto curve = CAutomationCurve::ReadFile(parts.mRest);
        if (!curve)
            return curve.Problem();
        material.mAutomation.push_back({parts.mID, std::move(*curve)});
    }
    return material;
}

/** As long as asked for; else as the longest of what is played, with time for notes to fade. */
std::int64_t LengthInFrames(const SRenderOptions& inOptions, const SRenderMaterial& inMaterial)
{
    double seconds = 0.0;
    if (inMaterial.mInput)
        seconds = static_cast<double>(inMaterial.mInput->Frames()) / inMaterial.mRate;
    if (!inMaterial.mMidi.empty())
        seconds = std::max(seconds, inMaterial.mMidi.back().mSeconds + kMidiTailSeconds);
    for (const SAutomationLane& lane : inMaterial.mAutomation)
        seconds = std::max(seconds, lane.mCurve.EndSeconds());
    if (seconds <= 0.0)
        seconds = kDefaultSeconds;
    return std::llround(inOptions.mSeconds.value_or(seconds) * inMaterial.mRate);
}

/** @return the sentence about the first identifier that the instance does not know, empty when all are known.
 */
std::string FindUnknownParameter(CInstance& inInstance, const SRenderOptions& inOptions)
{
    for (const auto* texts : {&inOptions.mSets, &inOptions.mAutomations})
        for (const std::string& text : *texts)
            if (const std::string id = SplitAssignment(text).mID; !inInstance.HasParameter(id))
                return fmt::format("The module has no parameter '{}'.", id);
    return {};
}

COutcome<SDone> ApplySets(CInstance& inInstance, const SRenderOptions& inOptions)
{
    for (const std::string& text : inOptions.mSets)
    {
        const SAssignment parts = SplitAssignment(text);
        const double value = ParseNumber(parts.mRest).value_or(0.0); // the command line was checked
        if (const AAX_Result result = inInstance.SetParameter(parts.mID, value))
            return SProblem{
                fmt::format("The parameter '{}' refuses {}: {}.", parts.mID, value, NameOfResult(result))};
    }
    return RunCycle(inInstance);
}

/** The saved state first, then what was set by hand. */
COutcome<SDone> PrepareInstance(const CModule& inModule, CInstance& inInstance,
                                const SRenderOptions& inOptions, const SRenderMaterial& inMaterial)
{
    if (inMaterial.mState)
    {
        if (const auto given = GiveState(inModule, inInstance, *inMaterial.mState); !given)
            return given.Problem();
        if (const auto answered = RunCycle(inInstance); !answered)
            return answered.Problem();
    }
    return ApplySets(inInstance, inOptions);
}

COutcome<SDone> SaveState(const CModule& inModule, CInstance& inInstance, const std::string& inPath)
{
    if (const auto answered = RunCycle(inInstance); !answered)
        return answered.Problem();
    const auto state = TakeState(inModule, inInstance);
    if (!state)
        return state.Problem();
    return WriteStateFile(inPath, *state);
}

COutcome<SDone> CheckDescription(CInstance& inInstance, const SRenderOptions& inOptions)
{
    if (inInstance.OutputChannels() == 0)
        return SProblem{"The module describes no output channel, so there is nothing to write."};
    if (!inOptions.mInput.empty() && inInstance.InputChannels() == 0)
        return SProblem{fmt::format("The module describes no input channel for '{}'.", inOptions.mInput)};
    const auto& fields = inInstance.Component().mFields;
    const bool takesMidi = std::any_of(fields.begin(), fields.end(),
                                       [](const SField& field) {
                                           return field.mKind == EFieldKind::MidiNode &&
                                                  field.mNodeType == AAX_eMIDINodeType_LocalInput;
                                       });
    if (!inOptions.mMidi.empty() && !takesMidi)
        return SProblem{fmt::format("The module describes no MIDI input for '{}'.", inOptions.mMidi)};
    return SDone{};
}

/** Renders into the file, as many channels as are wanted. @return the highest absolute sample of them. */
COutcome<float> RenderIntoFile(CInstance& inInstance, const SRenderJob& inJob, const std::string& inPath,
                               int inRate, std::int32_t inChannels)
{
    auto writer = CAudioWriter::Create(inPath, inRate, inChannels);
    if (!writer)
        return writer.Problem();
    float peak = 0.0F;
    const auto sink = [&](std::span<const float* const> channels, std::int32_t frames)
    {
        const auto wanted = channels.first(static_cast<std::size_t>(inChannels));
        for (const float* channel : wanted)
            for (std::int32_t i = 0; i < frames; ++i)
                peak = std::max(peak, std::abs(channel[i]));
        return writer->Write(wanted, frames);
    };
    CProgressBar progress(static_cast<double>(inJob.mFrames));
    auto done = RenderOffline(inInstance, inJob, sink,
                              [&](std::int64_t frames) { progress.Show(static_cast<double>(frames)); });
    if (done)
        done = writer->Close();
    if (!done)
        return done.Problem();
    return peak;
}

int Render(const SRenderOptions& inOptions)
{
    const auto material = ReadMaterial(inOptions);
    if (!material)
        return Fail(material.Problem());
    CHostLog log;
    const auto module = CModule::Open(inOptions.mModule, log);
    if (!module)
        return Fail(module.Problem());
    const auto instance = CInstance::Create(**module, material->mRate, {.mAnswers = inOptions.mAnswers});
    if (!instance)
        return Fail(instance.Problem());
    if (const std::string fault = FindUnknownParameter(**instance, inOptions); !fault.empty())
        return FailUsage(fault);
    if (const auto checked = CheckDescription(**instance, inOptions); !checked)
        return Fail(checked.Problem());
    if (const auto prepared = PrepareInstance(**module, **instance, inOptions, *material); !prepared)
        return Fail(prepared.Problem());

    SRenderJob job;
    job.mFrames = LengthInFrames(inOptions, *material);
    job.mRate = material->mRate;
    job.mBlockFrames = inOptions.mBlock;
    job.mTempo = inOptions.mTempo;
    job.mPlaying = !inOptions.mStopped;
    job.mInput = material->mInput ? &*material->mInput : nullptr;
    job.mMidi = material->mMidi;
    job.mAutomation = material->mAutomation;
    const std::int32_t channels =
        inOptions.mMainOnly ? (*instance)->MainOutputChannels() : (*instance)->OutputChannels();
    const auto peak = RenderIntoFile(**instance, job, inOptions.mOutput, material->mRate, channels);
    if (!peak)
    {
        std::error_code ignored; // the file may not even have been made
        std::filesystem::remove(inOptions.mOutput, ignored);
        return Fail(peak.Problem());
    }
    if (!inOptions.mSaveState.empty())
        if (const auto saved = SaveState(**module, **instance, inOptions.mSaveState); !saved)
            return Fail(saved.Problem());
    fmt::print("Wrote {}: {:.3f} seconds, {} Hz, {} channels, peak {:.4f}\n", inOptions.mOutput,
               static_cast<double>(job.mFrames) / job.mRate, material->mRate, channels, *peak);
    return kExitSuccess;
}

/** Takes `ID=VALUE` with a normalized value. */
CLI::Validator ParameterValue()
{
    const auto check = [](const std::string& text)
    {
        const SAssignment parts = SplitAssignment(text);
        const auto value = ParseNumber(parts.mRest);
        return !parts.mID.empty() && value && *value >= 0.0 && *value <= 1.0
                   ? std::string()
                   : fmt::format("'{}' is not of the form ID=VALUE with a value from 0 to 1.", text);
    };
    return CLI::Validator(check, "");
}
} // namespace

void AddCommandRender(CLI::App& ioApp, CommandAction& outAction)
{
    auto options = std::make_shared<SRenderOptions>();
    CLI::App* command = ioApp.add_subcommand("render", "Play an instance of a module into a WAV file");
    command->add_option("MODULE", options->mModule, "Bundle folder or module file")->required();
    command->add_option("--output", options->mOutput, "WAV file to write; auxiliary stems follow as channels")
        ->required();
    command->add_option("--input", options->mInput, "Audio file to feed in; one channel feeds all");
    command->add_option("--midi", options->mMidi, "Standard MIDI File to play");
    command
        ->add_option("--seconds", options->mSeconds,
                     "Length; otherwise that of the input, the MIDI file or the automation")
        ->check(NumberFrom(0.001, 86400.0));
    command->add_option("--rate", options->mRate, "Sample rate in Hz; otherwise the input's or 44100")
        ->check(WholeNumberFrom(8000, 384000));
    command->add_option("--block", options->mBlock, "Frames in a block (512)")
        ->check(WholeNumberFrom(1, SRenderCall::kBufferFrames));
    command->add_option("--tempo", options->mTempo, "Beats per minute (120)")->check(NumberFrom(1.0, 999.0));
    command->add_flag("--stopped", options->mStopped, "Leave the transport stopped");
    command->add_option("--state", options->mState, "State file to load before anything else");
    command->add_option("--save-state", options->mSaveState, "State file to write at the end");
    command->add_flag("--main-only", options->mMainOnly, "Leave the auxiliary stems out of the file");
    command->add_option("--set", options->mSets, "ID=VALUE: set a parameter, 0 to 1, before the first block")
        ->allow_extra_args(false)
        ->check(ParameterValue());
    command
        ->add_option("--automate", options->mAutomations,
                     "ID=FILE.csv: move a parameter along a curve of lines seconds,value")
        ->allow_extra_args(false)
        ->check(Assignment());
    AddAnswersOption(*command, options->mAnswers);
    command->callback([options, &outAction] { outAction = [options] { return Render(*options); }; });
}
