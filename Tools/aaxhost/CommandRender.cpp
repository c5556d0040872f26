#include "Tools/aaxhost/CommandOptions.h"
#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/Commands.h"
#include "Tools/aaxhost/RenderMaterial.h"
#include "Tools/aaxhost/RenderedFile.h"
#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"
#include "Tools/aaxhost/player/CPostedMidi.h"
#include "Tools/aaxhost/player/MidiFileWriter.h"
#include "Tools/aaxhost/player/ParameterChoice.h"
#include "Tools/aaxhost/player/ParseNumber.h"
#include "Tools/aaxhost/player/StateFile.h"
#include "Tools/support/CWholeFile.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <memory>

namespace
{
/** A parameter's identifier and what it is set to. */
struct SParameterSetting
{
    std::string mID;
    double mValue = 0.0; // normalized
};

/** `PARAMETER=VALUE`: names of parameters may hold a `=`, values do not. */
SAssignment SplitSetting(const std::string& inText)
{
    const auto equals = inText.rfind('=');
    if (equals == std::string::npos)
        return {inText, {}};
    return {inText.substr(0, equals), inText.substr(equals + 1)};
}

/** Puts identifiers where names may stand. @return what is to be set before the first block. */
COutcome<std::vector<SParameterSetting>> ChooseParameters(CInstance& inInstance,
                                                          const SRenderOptions& inOptions,
                                                          std::vector<SAutomationLane>& ioLanes)
{
    std::vector<SParameterSetting> settings;
    if (inOptions.mBypassAt)
    {
        const std::string bypass = inInstance.MasterBypassID();
        if (bypass.empty())
            return SProblem{"The module has no master bypass."};
        ioLanes.push_back({bypass, CAutomationCurve::StepAt(*inOptions.mBypassAt)});
    }
    if (inOptions.mSets.empty() && ioLanes.empty())
        return settings; // the instance is not asked for nothing
    const std::vector<SParameterInfo> parameters = inInstance.ListParameters();
    for (const std::string& text : inOptions.mSets)
    {
        const SAssignment parts = SplitSetting(text);
        const auto id = ChooseParameter(parameters, parts.mID);
        if (!id)
            return id.Problem();
        settings.push_back({*id, ParseNumber(parts.mRest).value_or(0.0)}); // the command line was checked
    }
    for (SAutomationLane& lane : ioLanes)
    {
        const auto id = ChooseParameter(parameters, lane.mParameterID);
        if (!id)
            return id.Problem();
        lane.mParameterID = *id;
    }
    return settings;
}

COutcome<SDone> ApplySettings(CInstance& inInstance, const std::vector<SParameterSetting>& inSettings)
{
    for (const auto& [id, value] : inSettings)
        if (const AAX_Result result = inInstance.SetParameter(id, value))
            return SProblem{
                fmt::format("The parameter '{}' refuses {}: {}.", id, value, NameOfResult(result))};
    return RunCycle(inInstance);
}

/** The saved state first, then what was set by hand. */
COutcome<SDone> PrepareInstance(const CModule& inModule, CInstance& inInstance,
                                const std::vector<SParameterSetting>& inSettings,
                                const SRenderMaterial& inMaterial)
{
    if (inMaterial.mState)
    {
        if (const auto given = GiveState(inModule, inInstance, *inMaterial.mState); !given)
            return given.Problem();
        if (const auto answered = RunCycle(inInstance); !answered)
            return answered.Problem();
    }
    return ApplySettings(inInstance, inSettings);
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

bool HasNode(const CInstance& inInstance, AAX_EMIDINodeType inType)
{
    return std::ranges::any_of(
        inInstance.Component().mFields, [=](const SField& field)
        { return field.mKind == EFieldKind::MidiNode && field.mNodeType == inType; });
}

COutcome<SDone> CheckDescription(CInstance& inInstance, const SRenderOptions& inOptions)
{
    if (inInstance.OutputChannels() == 0)
        return SProblem{"The module describes no output channel, so there is nothing to write."};
    if (!inOptions.mInput.empty() && inInstance.InputChannels() == 0)
        return SProblem{fmt::format("The module describes no input channel for '{}'.", inOptions.mInput)};
    if (!inOptions.mMidi.empty() && !HasNode(inInstance, AAX_eMIDINodeType_LocalInput))
        return SProblem{fmt::format("The module describes no MIDI input for '{}'.", inOptions.mMidi)};
    if (!inOptions.mMidiOutput.empty() && !HasNode(inInstance, AAX_eMIDINodeType_LocalOutput))
        return SProblem{fmt::format("The module describes no MIDI output for '{}'.", inOptions.mMidiOutput)};
    return SDone{};
}

SProblem BadSamples(const SRenderedSamples& inSamples, const std::string& inPath, double inRate)
{
    return {fmt::format(
        "The module rendered {} samples that are no numbers and {} that are infinite, the first "
        "at {:.6f} seconds in channel {}; '{}' holds them as they came.",
        inSamples.mNotNumbers, inSamples.mInfinite, static_cast<double>(inSamples.mFirstBadFrame) / inRate,
        inSamples.mFirstBadChannel + 1, inPath)};
}

/** One line on standard error about each thing of the input file that is not played as it stands there. */
void SayWhatInputLacks(const CInstance& inInstance, const SRenderOptions& inOptions, const SAudio& inInput)
{
    const auto inputs = static_cast<std::size_t>(inInstance.InputChannels());
    const std::size_t channels = inInput.mChannels.size();
    if (inInput.Frames() == 0)
        fmt::print(stderr, "'{}' holds no sound: the module gets silence.\n", inOptions.mInput);
    else if (channels > inputs && channels > 1)
        fmt::print(stderr, "'{}' has {} channels and the module takes {}: the others are left out.\n",
                   inOptions.mInput, channels, inputs);
    else if (channels < inputs && channels > 1)
        fmt::print(stderr, "'{}' has {} channels and the module takes {}: the others get silence.\n",
                   inOptions.mInput, channels, inputs);
}

/** The same of the MIDI file. */
void SayWhatMidiLacks(const SRenderOptions& inOptions, const SMidiSong& inSong)
{
    if (inSong.mEvents.empty())
        fmt::print(stderr, "'{}' holds no channel message, so nothing is played.\n", inOptions.mMidi);
    if (inSong.mSystemMessages > 0)
        fmt::print(stderr, "System exclusive messages in '{}' are left out: {}.\n", inOptions.mMidi,
                   inSong.mSystemMessages);
    if (inSong.mForeignMeters > 0 && !inOptions.mTransport.mMeter)
        fmt::print(stderr, "Time signatures in '{}' that no host can be set to are left out: {}.\n",
                   inOptions.mMidi, inSong.mForeignMeters);
    const auto isUnusual = [](const STempoChange& change)
    { return change.mBeatsPerMinute < kLowestTempo || change.mBeatsPerMinute > kHighestTempo; };
    const auto unusual = std::find_if(inSong.mTempos.begin(), inSong.mTempos.end(), isUnusual);
    const bool isFollowed = !inOptions.mTransport.mTempo && inOptions.mTransport.mTempoMap.empty();
    if (unusual != inSong.mTempos.end() && isFollowed)
        fmt::print(
            stderr,
            "'{}' holds a tempo of {} beats per minute at {:.3f} seconds; the module is told, though hosts "
            "have {} to {}.\n",
            inOptions.mMidi, unusual->mBeatsPerMinute, unusual->mSeconds, kLowestTempo, kHighestTempo);
}

SRenderJob MakeJob(const SRenderOptions& inOptions, const SRenderMaterial& inMaterial)
{
    SRenderJob job;
    job.mFrames = LengthInFrames(inOptions, inMaterial);
    job.mRate = inMaterial.mRate;
    job.mBlockFrames = inOptions.mBlock;
    job.mMostTailFrames = std::llround(inOptions.mMostTailSeconds * inMaterial.mRate);
    job.mTimeline = inMaterial.mTimeline;
    job.mLoop = inOptions.mTransport.mLoop;
    job.mJumps = inOptions.mTransport.mJumps;
    job.mCompensates = inOptions.mCompensates;
    job.mTimerRate = inOptions.mTimerRate;
    job.mPlaying = !inOptions.mTransport.mStopped;
    job.mInput = inMaterial.mInput ? &*inMaterial.mInput : nullptr;
    job.mMidi = inMaterial.mMidi.mEvents;
    job.mAutomation = inMaterial.mAutomation;
    return job;
}

/** The first latency that the module told, and each that is another than the one before. */
void TellLatency(CInstance& inInstance, double inRate)
{
    const std::vector<SLatencyChange>& told = inInstance.Host().Controller().State().mLatencyChanges;
    for (std::size_t i = 0; i < told.size(); ++i)
        if (i == 0 || told[i].mSamples != told[i - 1].mSamples)
            fmt::print("Latency: {} samples from {:.3f} seconds on\n", told[i].mSamples,
                       static_cast<double>(told[i].mFrame) / inRate);
}

COutcome<SDone> SaveMidiOutput(const std::string& inPath, CPostedMidi& ioOutput, const SRenderJob& inJob,
                               const SRenderedSamples& inSamples)
{
    ioOutput.Finish();
    const SHeardTimeline heard = HearTimeline(inJob.mTimeline, inJob.mRate, inJob.mPlaying,
                                              inSamples.mEnd.mPassages, inSamples.mEnd.mFrames);
    if (auto written = WriteMidiFile(inPath, ioOutput.Messages(), heard,
                                     static_cast<double>(inSamples.mFrames) / inJob.mRate);
        !written)
        return written;
    fmt::print("Wrote {}: {} MIDI messages\n", inPath, ioOutput.Messages().size());
    if (ioOutput.LeftOut() > 0)
        fmt::print(stderr, "System messages that a MIDI file has no place for are left out: {}.\n",
                   ioOutput.LeftOut());
    return SDone{};
}

int Render(const SRenderOptions& inOptions)
{
    if (inOptions.mTransport.mTempo && !inOptions.mTransport.mTempoMap.empty())
        return FailUsage("Both --tempo and --tempo-map say what the tempo is: give one of them only.");
    for (const std::string& path : {inOptions.mOutput, inOptions.mSaveState, inOptions.mMidiOutput})
        if (const auto writable = CheckWritable(path); !writable)
            return Fail(writable.Problem());
    auto material = ReadMaterial(inOptions);
    if (!material)
        return Fail(material.Problem());
    CHostLog log;
    const auto module = CModule::Open(inOptions.mModule, log);
    if (!module)
        return Fail(module.Problem());
    const auto instance = CInstance::Create(**module, material->mRate,
                                            {.mAnswers = inOptions.mAnswers, .mStems = inOptions.mStems});
    if (!instance)
        return Fail(instance.Problem());
    const auto settings = ChooseParameters(**instance, inOptions, material->mAutomation);
    if (!settings)
        return FailUsage(settings.Problem().mSentence);
    if (const auto checked = CheckDescription(**instance, inOptions); !checked)
        return Fail(checked.Problem());
    if (const auto prepared = PrepareInstance(**module, **instance, *settings, *material); !prepared)
        return Fail(prepared.Problem());
    if (material->mInput)
        SayWhatInputLacks(**instance, inOptions, *material->mInput);
    if (!inOptions.mMidi.empty())
        SayWhatMidiLacks(inOptions, material->mMidi);

    SRenderJob job = MakeJob(inOptions, *material);
    CPostedMidi midiOutput(job.mRate);
    job.mMidiOutput = inOptions.mMidiOutput.empty() ? nullptr : &midiOutput;
    const std::int32_t channels =
        inOptions.mMainOnly ? (*instance)->MainOutputChannels() : (*instance)->OutputChannels();
    const auto samples = RenderIntoFile(**instance, job, inOptions.mOutput, channels);
    if (!samples)
        return Fail(samples.Problem());
    if (job.mCompensates)
        TellLatency(**instance, job.mRate);
    if (!inOptions.mSaveState.empty())
        if (const auto saved = SaveState(**module, **instance, inOptions.mSaveState); !saved)
            return Fail(saved.Problem());
    fmt::print("Wrote {}: {:.3f} seconds, {} Hz, {} channels, peak {:.4f}\n", inOptions.mOutput,
               static_cast<double>(samples->mFrames) / job.mRate, material->mRate, channels, samples->mPeak);
    if (inOptions.mMostTailSeconds > 0.0 && !samples->mEnd.mIsSilent)
        fmt::print(stderr, "The module was not silent after a tail of {} seconds, where '{}' ends.\n",
                   inOptions.mMostTailSeconds, inOptions.mOutput);
    if (job.mMidiOutput != nullptr)
        if (const auto saved = SaveMidiOutput(inOptions.mMidiOutput, midiOutput, job, *samples); !saved)
            return Fail(saved.Problem());
    int exit = kExitSuccess;
    if (const std::string fault = midiOutput.Fault(); !fault.empty())
        exit = Fail({fault});
    if (samples->mFirstBadFrame >= 0)
        exit = Fail(BadSamples(*samples, inOptions.mOutput, job.mRate));
    return exit;
}

/** Takes `PARAMETER=VALUE` with a normalized value. */
CLI::Validator ParameterValue()
{
    const auto check = [](const std::string& text)
    {
        const SAssignment parts = SplitSetting(text);
        const auto value = ParseNumber(parts.mRest);
        return !parts.mID.empty() && value && *value >= 0.0 && *value <= 1.0
                   ? std::string()
                   : fmt::format("'{}' is not of the form PARAMETER=VALUE with a value from 0 to 1.", text);
    };
    return CLI::Validator(check, "");
}
} // namespace

void AddCommandRender(CLI::App& ioApp, CommandAction& outAction)
{
    auto options = std::make_shared<SRenderOptions>();
    CLI::App* command = ioApp.add_subcommand("render", "Play an instance of a module into a WAV file");
    command->add_option("MODULE", options->mModule, "Bundle folder or module file")->required();
    command->footer(
        "Exit code: 0 where all was written, 1 where it was not, where samples are no finite numbers or "
        "MIDI output would be misplayed, 2 for wrong usage.");
    command->add_option("--output", options->mOutput, "WAV file to write; auxiliary stems follow as channels")
        ->type_name("FILE")
        ->required();
    command->add_option("--input", options->mInput, "Audio file to feed in; one channel feeds all")
        ->type_name("FILE");
    command->add_option("--midi", options->mMidi, "Standard MIDI File to play")->type_name("FILE");
    command
        ->add_option("--seconds", options->mSeconds,
                     "Length; otherwise that of the input, the MIDI file or the automation")
        ->check(NumberFrom(0.001, 86400.0));
    // A flag takes its value behind a = only: `--tail MODULE` would be two readings.
    command
        ->add_flag("--tail{60}", options->mMostTailSeconds,
                   "Go on until a second is silent (-120 dB), for 60 seconds at most; --tail=SECONDS for "
                   "another limit")
        ->check(WholeNumberFrom(1, 86400));
    command->add_option("--rate", options->mRate, "Sample rate in Hz; otherwise the input's or 44100")
        ->check(WholeNumberFrom(8000, 384000));
    command->add_option("--block", options->mBlock, "Frames in a block (512)")
        ->check(WholeNumberFrom(1, SRenderCall::kBufferFrames));
    AddTransportOptions(*command, options->mTransport);
    command->add_option("--state", options->mState, "State file to load before anything else")
        ->type_name("FILE");
    command->add_option("--save-state", options->mSaveState, "State file to write at the end")
        ->type_name("FILE");
    command
        ->add_option("--midi-output", options->mMidiOutput,
                     "Standard MIDI File to write with what the module plays, at the times of the render")
        ->type_name("FILE");
    command->add_flag(
        "--compensate", options->mCompensates,
        "Make up for the latency that the module tells: the file begins as much later and is as "
        "long. What it told last counts for the whole file; MIDI output stays where it is");
    command
        ->add_option("--timer", options->mTimerRate,
                     "How often in a second of sound the module's timer is woken (30); 0: never, as in hosts "
                     "that are offline")
        ->check(NumberFrom(0.0, 1000.0));
    command->add_flag("--main-only", options->mMainOnly, "Leave the auxiliary stems out of the file");
    command
        ->add_option("--set", options->mSets,
                     "Set a parameter (its ID or name), 0 to 1, before the first block")
        ->type_name("PARAMETER=VALUE")
        ->allow_extra_args(false)
        ->check(ParameterValue());
    command
        ->add_option("--automate", options->mAutomations,
                     "Move a parameter along a curve of lines seconds,value")
        ->type_name("PARAMETER=FILE.csv")
        ->allow_extra_args(false)
        ->check(Assignment());
    command->add_option("--bypass-at", options->mBypassAt, "Switch the master bypass on at that time")
        ->type_name("SECONDS")
        ->check(NumberFrom(0.0, 86400.0));
    command
        ->add_option("--stems", options->mStems, "Main stems of the track, as described; otherwise the first")
        ->type_name("mono|mono-stereo|stereo");
    AddAnswersOption(*command, options->mAnswers);
    command->callback([options, &outAction] { outAction = [options] { return Render(*options); }; });
}
