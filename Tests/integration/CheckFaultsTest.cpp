#include "Tests/doubles/faulty/FaultyPlugin.h"
#include "Tests/integration/CheckRun.h"
#include "Tools/aaxhost/check/SCheck.h"
#include "Tools/aaxhost/window/CVirtualDisplay.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

// Each check has a fault that it finds: of a plug-in, of a product or of a module of its own.
namespace
{
struct SFaulty
{
    const char* mPlugin;
    CheckNames mFails;         // exactly these checks
    const char* mSaying;       // a part of the first one's reason, or of the first warning's where none fails
    CheckNames mWarns = {};    // and exactly these
    CheckNames mOfModule = {}; // those of both that the plug-in alone would pass
    std::filesystem::path mModule = kPlainModule;
    CheckNames All() const
    {
        CheckNames all = mFails;
        all.insert(mWarns.begin(), mWarns.end());
        return all;
    }
    friend void PrintTo(const SFaulty& inFaulty, std::ostream* outStream) { *outStream << inFaulty.mPlugin; }
};

class FaultyPlugin : public testing::TestWithParam<SFaulty>
{
};

TEST_P(FaultyPlugin, MakesItsOwnChecksFailAndNoOther)
{
    const SFaulty& faulty = GetParam();
    const std::string plugin = faulty.mPlugin;
    if (kIsSanitized && (plugin == "Leak" || plugin == "Slots" || plugin == "Heap" || plugin == "Blocking"))
        GTEST_SKIP() << "the sanitizer has replaced what is watched here";
    const bool needsDisplay =
        std::ranges::any_of(faulty.mFails, [](const std::string& name)
                            { return name.starts_with("editor.") || name == "features.gestures"; });
    if (needsDisplay && !CVirtualDisplay::IsInstalled())
        GTEST_SKIP() << "Xvfb is not installed";
    const bool hangs = faulty.mFails.contains("life-cycle.creates");
    std::vector<std::string> arguments = {"--strictness", "5"};
    if (hangs)
        arguments.insert(arguments.end(), {"--limit", "1"});
    else if (kIsSanitized) // that no other check does is seen without the sanitizers, and takes them long
        for (const std::string& name : faulty.All())
            arguments.insert(arguments.end(), {"--only", name});
    const std::filesystem::path features =
        faulty.mModule == kAllFeaturesModule ? kAllFeatures : std::filesystem::path();
    const SCheckRun run(faulty.mModule, Faulty(plugin), arguments, features);
    EXPECT_EQ(run.With("failed"), faulty.mFails) << run.mRun.mOutput << run.mRun.mErrors;
    EXPECT_EQ(run.With("warning"), faulty.mWarns) << run.mRun.mOutput << run.mRun.mErrors;
    EXPECT_EQ(run.mRun.mExit, faulty.mFails.empty() ? 0 : 1);
    const std::string first = faulty.mFails.empty() ? *faulty.mWarns.begin() : *faulty.mFails.begin();
    EXPECT_NE(run.ReasonOf(first).find(faulty.mSaying), std::string::npos) << run.ReasonOf(first);
    EXPECT_EQ(run.mRun.mOutput.find("Not fit to ship.") == std::string::npos, faulty.mFails.empty());
    for (const std::string& name : faulty.All())
    {
        const bool isUnclear = FindCheck(name)->mAlone == EAlone::Accuses;
        const std::string fault = isUnclear ? "unknown" : "module";
        EXPECT_EQ(run.Told(name, "fault"), faulty.mOfModule.contains(name) ? fault : "plug-in") << name;
    }
    for (const std::string& name : hangs ? run.With("passed") : CheckNames())
        EXPECT_TRUE(name.starts_with("description.")) << name << " is called good without an instance";
}

// Its notes begin with the block that they are in.
const CheckNames kOfTheSynth = {"midi.timing", "rendering.large-blocks"};

const std::vector<SFaulty>& FaultyPlugins()
{
    static const std::vector<SFaulty> rows = {
        SFaulty{"Identity", {"description.identity"}, "product id", {}, {"description.identity"}},
        SFaulty{"HangInOpen", {"life-cycle.creates"}, "limit of 1 seconds"},
        SFaulty{"Leak", {"life-cycle.memory"}, "with every instance that is made and deleted: by "},
        SFaulty{"Shared", {"life-cycle.independent"}, "(Gain) in another, from 0.8000 to 0.1000"},
        SFaulty{"Copies", {"life-cycle.independent"}, "beside an instance with another one"},
        SFaulty{"Static", {"life-cycle.any-order", "robustness.everything"}, "SIGABRT"},
        SFaulty{"Rest", {"parameters.at-rest", "state.new-instance"}, "(Gain) moves from 0.8000 to 0.3000"},
        SFaulty{"Automation", {"automation.dense"}, "SIGABRT"},
        SFaulty{"Reports", {"automation.answers"}, "and for 3 more in the 3 cycles after them"},
        SFaulty{"Start",
                {"automation.before-coefficients"},
                "(Gain) is at 0.8000 when they and 64 frames are done; automated later, at 0.1000",
                {"automation.audible"}},
        SFaulty{"Gestures", {"editor.gestures"}, "begins 1 edit and ends 0"},
        SFaulty{"Notes", {"midi.note-ends"}, "still sounds", kOfTheSynth},
        SFaulty{"Bounds", {"rendering.bounds"}, "In a block of 1 frames output 2 was written at frame 1"},
        SFaulty{"Silence",
                {"rendering.writes-outputs"},
                "In a block of 512 frames, 512 of them are not written in output 2 of 2"},
        SFaulty{"Pointers", {"rendering.large-blocks"}, "In blocks of 2048 frames, output 1 is"},
        SFaulty{"Numbers", {"rendering.beyond-full-scale", "rendering.full-scale"}, "not a number"},
        SFaulty{"Latency",
                {"rendering.latency"},
                "reports a latency of 64 samples (1.33 ms), and an impulse arrives after 0"},
        SFaulty{"Heap",
                {"rendering.allocations"},
                "The wrapped plug-in allocates memory 258 times in 258 of 258 blocks of 256 frames (malloc, "
                "called by"},
        SFaulty{
            "Blocking",
            {"rendering.locks", "rendering.system-calls"},
            "for 258 times in 258 of 258 blocks of 256 frames (pthread_mutex_lock, called by source.vst "},
        SFaulty{"Tempo", {"transport.moving-tempo", "transport.tempos"}, "SIGABRT"},
        SFaulty{"Memory", {"state.new-instance", "state.round-trip"}, "was saved at", {"state.same-bytes"}},
        SFaulty{"Coarse",
                {"state.new-instance", "state.round-trip"},
                "('soft'), and does not sound the same",
                {"state.same-bytes"}},
        SFaulty{"Load", {"state.answers"}, "(Gain) is at 0.", {"state.same-bytes"}},
        SFaulty{"Chunk", {"state.damaged", "state.random", "state.truncated"}, "SIGABRT"},
        SFaulty{"Slots", {"life-cycle.many", "life-cycle.memory", "life-cycle.repeats"}, "SIGABRT"},
        SFaulty{"Voices",
                {"life-cycle.notes-left-on", "midi.all-notes-off", "midi.timing"},
                "SIGABRT",
                {"rendering.large-blocks"}},
        SFaulty{
            "Names", {}, "The parameters '00000' and '00001' are both called 'Gain'.", {"parameters.names"}},
        SFaulty{"Table", {"automation.accepted", "parameters.set-and-get"}, "(Gain) refuses its automation"},
        SFaulty{"Ends", {}, "it reads 0.0500 after 0; 2 of 2 parameters", {"parameters.set-and-get"}},
        SFaulty{"Trusts", {"parameters.out-of-range"}, "SIGABRT"},
        SFaulty{"Root",
                {"automation.dense", "automation.stopped", "parameters.extremes", "parameters.random",
                 "parameters.sweep", "parameters.sweep-threads", "robustness.everything"},
                "not a number in output 1 at frame 0 (0.0 ms), the first of "},
        SFaulty{"Deaf", {}, "all 2 of them at 0.9, 0.1 and 0.6 make one of silence", {"automation.audible"}},
        SFaulty{"Mute", {}, "its peak is silence, and -80.0 dB would be heard", {"midi.note-sounds"}},
        SFaulty{"Panic",
                {},
                "6 seconds after controller 120 the note is at -",
                {"midi.all-notes-off", "midi.timing", "rendering.large-blocks"}},
        SFaulty{"Resonance", {"midi.controllers"}, "after every controller went to its ends", kOfTheSynth},
        SFaulty{"Programs", {"midi.channel-messages", "midi.malformed"}, "SIGABRT", kOfTheSynth},
        SFaulty{"Status", {"midi.malformed"}, "SIGABRT", kOfTheSynth},
        SFaulty{"Frames", {"midi.block-edges"}, "SIGABRT", kOfTheSynth},
        SFaulty{"Messages", {"midi.flood", "midi.many-voices"}, "SIGABRT", kOfTheSynth},
        SFaulty{"Pairs",
                {"rendering.block-sizes", "rendering.bounds", "rendering.changing-blocks",
                 "rendering.large-blocks", "rendering.odd-blocks", "rendering.writes-outputs",
                 "robustness.everything", "robustness.unusual-rates"},
                "SIGABRT"},
        SFaulty{"Mean", {"rendering.empty-block"}, "after blocks of no frames"},
        SFaulty{"Rates", {"rendering.rates"}, "at 176400 Hz", {"robustness.unusual-rates"}},
        SFaulty{"Inputs",
                {},
                "in a block of 512 frames, 512 of them in input 2 of 2.",
                {"rendering.inputs-kept"}},
        SFaulty{"Clears",
                {"rendering.in-place"},
                "The sound is another one when inputs and outputs are the same buffers: output 1 is 0.00000 "
                "at frame"},
        SFaulty{"Outputs", {"rendering.shared-outputs"}, "an infinite sample in output 3"},
        SFaulty{"Mixes", {"rendering.shared-outputs"}, "another sound when the 2 that nobody uses share"},
        SFaulty{"Phases", {}, "Two instances that loaded the same state", {"state.same-sound"}},
        SFaulty{"Drift", {}, "one that differs by -19.", {"automation.repeatable", "rendering.repeatable"}},
        SFaulty{
            "Hum", {}, "of -40.0 dB at its peak; below -60.0 dB it would be silence.", {"rendering.silence"}},
        SFaulty{"Freeze", {}, "still sounds", {"rendering.returns-to-silence"}},
        SFaulty{"Feedback",
                {},
                "After 64 frames of infinite samples",
                {"rendering.infinities", "rendering.not-a-number"}},
        SFaulty{"Level", {"rendering.denormals"}, "an infinite sample"},
        SFaulty{"Sides", {"rendering.one-channel"}, "an infinite sample"},
        SFaulty{"Loud", {}, "comes out at ", {"rendering.level"}},
        SFaulty{"Tape",
                {"automation.stopped", "robustness.missing-nodes", "transport.far-positions",
                 "transport.no-answers", "transport.start-stop", "transport.stopped"},
                "while parameters move and the transport stands"},
        SFaulty{"Place", {"transport.far-positions", "transport.jumps"}, "SIGABRT"},
        SFaulty{"Sequencer", {"transport.loop", "transport.meters"}, "SIGABRT", {}, {}, kAllFeaturesModule},
        SFaulty{"Counts", {}, "sessions look changed: the chunk ", {"state.same-again", "state.same-bytes"}},
        SFaulty{"Rounds",
                {"state.round-trip"},
                "('0.22') and comes back at 0.2500",
                {"state.compares", "state.same-again", "state.same-bytes"},
                {"state.compares", "state.same-again", "state.same-bytes"}},
        SFaulty{
            "Threads",
            {"editor.while-rendering", "parameters.sweep-threads", "robustness.everything", "state.threads"},
            "while the editor is open"},
        SFaulty{"OpensOnce", {"editor.deleted-open", "editor.reopens", "editor.window-taken"}, "SIGABRT"},
        SFaulty{"Grows",
                {"life-cycle.independent", "state.answers", "state.compares", "state.damaged",
                 "state.new-instance", "state.random", "state.round-trip", "state.same-again",
                 "state.same-bytes", "state.same-sound", "state.sizes", "state.threads", "state.truncated"},
                "The chunk '0001' cannot be saved",
                {},
                {"life-cycle.independent", "state.answers", "state.compares", "state.damaged", "state.random",
                 "state.same-again", "state.same-bytes", "state.same-sound", "state.sizes", "state.threads",
                 "state.truncated"}},
        SFaulty{"Clings",
                {"features.gestures"},
                "the host still takes '00000' (Gain) for held",
                {},
                {"features.gestures"},
                kAllFeaturesModule},
        SFaulty{"HugeEditor", {"editor.opens"}, "The editor wants 30000 by 100 pixels, more than 8192."},
        SFaulty{"OneEditor", {"editor.two"}, "SIGABRT"},
        SFaulty{"Snaps", {"editor.changes-nothing"}, "from 0.8000 to 0.7500"}};
    return rows;
}

INSTANTIATE_TEST_SUITE_P(Each, FaultyPlugin, testing::ValuesIn(FaultyPlugins()),
                         [](const testing::TestParamInfo<SFaulty>& inInfo)
                         { return std::string(inInfo.param.mPlugin); });

/** What runs above strictness five, and what takes long or most other checks with it: looked at alone. */
struct SAlone
{
    const char* mPlugin;
    const char* mCheck;
    const char* mResult;
    const char* mSaying;
};
constexpr SAlone kAlone[] = {
    {"Slots", "life-cycle.fifty", "failed", "SIGABRT"},
    {"Last", "life-cycle.reopens", "failed", "SIGABRT"},
    {"Analysis", "rendering.keeps-up", "warning", "1 seconds in blocks of 256 frames take "},
    {"Unstable", "rendering.finite", "failed", "with ordinary material"},
    {"Unstable", "rendering.long-run", "failed", "after 1 seconds"},
    {"Chunk", "state.huge", "failed", "SIGABRT"}};

TEST(Check, WhatRunsAloneFindsItsFault)
{
    for (const SAlone& row : kAlone)
    {
        SCOPED_TRACE(row.mCheck);
        const SCheckRun sound(kPlainModule, Faulty("None"), {"--only", row.mCheck});
        EXPECT_EQ(sound.Told(row.mCheck, "result"), "passed");
        const SCheckRun run(kPlainModule, Faulty(row.mPlugin), {"--only", row.mCheck});
        EXPECT_EQ(run.Told(row.mCheck, "result"), row.mResult);
        EXPECT_EQ(run.Told(row.mCheck, "fault"), "plug-in");
        EXPECT_NE(run.ReasonOf(row.mCheck).find(row.mSaying), std::string::npos) << run.ReasonOf(row.mCheck);
    }
}

struct SClaimed
{
    const char* mPlugin; // makes use of one feature
    const char* mCheck;
    const char* mSaying;
    bool mIsOfAny = false; // the others make use of that feature too
};
constexpr SClaimed kClaimed[] = {
    {"FollowsTempo", "features.time", "the module sounds the same"},
    {"LateLatency", "features.latency", "144 samples (3.00 ms); the host was told 0."},
    {"AsksAboutHost", "features.host-answers", "output 1 differs from frame 0 on"},
    {"WorksIdle", "features.idle", "output 1 differs from frame 512 on"},
    {"Widens", "features.resize", "becomes 320 by 240 pixels"},
    {"SendsMidi", "features.midi-output", "field 24 is no output node"},
    {"TakesDumps", "features.sysex", "output 1 differs from frame 24000 on"},
    {"HasPrograms", "features.program-first", "(Gain) is at 0.8000"},
    {"NamesOutputs", "features.output-names", "Auxiliary output 1 has no name."},
    {"None", "features.parameter-sync", "to 0.25 and is told 0.8000.", true},
    {"WritesUnits", "features.value-texts", "'0.80', and the plug-in writes '0.80 %'.", true},
    {"None", "features.bypass", "Bypassed, channel 1 has", true},
    {"Steps", "features.parameter-properties", "has 0 steps, and by the plug-in 5.", true},
    {"TwoPrograms", "features.programs", "The plug-in has 2 programs, and the last parameter is 'Gain'",
     true}};

TEST(Check, AFeatureThatIsOnlyClaimedFailsItsCheckAndNoOther)
{
    CVirtualDisplay display; // one for all runs, each of which would start its own
    EXPECT_EQ(CVirtualDisplay::IsInstalled() ? display.Start() : "", "");
    std::vector<std::string> arguments;
    for (const SClaimed& row : kClaimed)
        if (!row.mIsOfAny)
            arguments.insert(arguments.end(), {"--only", row.mCheck});
    for (const SClaimed& row : kClaimed)
    {
        SCOPED_TRACE(row.mCheck);
        if (row.mPlugin == std::string("Widens") && !CVirtualDisplay::IsInstalled())
            continue;
        const std::string plugin = Faulty(row.mPlugin);
        if (row.mIsOfAny)
            arguments = {"--only", row.mCheck};
        const SCheckRun claimed(kOptionsModule, plugin, arguments, kAllFeatures);
        EXPECT_EQ(claimed.With("failed"), CheckNames{row.mCheck}) << claimed.mRun.mOutput;
        EXPECT_EQ(claimed.With("passed"), CheckNames());
        EXPECT_EQ(claimed.Told(row.mCheck, "fault"), "module");
        EXPECT_NE(claimed.ReasonOf(row.mCheck).find(row.mSaying), std::string::npos)
            << claimed.ReasonOf(row.mCheck);
        const SCheckRun built(kAllFeaturesModule, plugin, arguments, kAllFeatures);
        EXPECT_EQ(built.With("passed"), CheckNames{row.mCheck}) << built.mRun.mOutput;
        EXPECT_EQ(built.With("failed"), CheckNames());
    }
}

TEST(Check, SoundInOneChannelIsComparedWithThePluginAlone)
{
    // It is silent where its host does not answer, which the module does not.
    const SCheckRun run(kOptionsModule, Faulty("AsksAboutHost"), {"--only", "rendering.one-channel"},
                        kAllFeatures);
    EXPECT_EQ(run.Told("rendering.one-channel", "fault"), "module") << run.mRun.mOutput;
    EXPECT_NE(run.ReasonOf("rendering.one-channel").find("of the module has a peak of silence"),
              std::string::npos)
        << run.ReasonOf("rendering.one-channel");
}

/** What no product of the adapter does: a module of its own does, of which most is missing anyway. */
struct SMade
{
    const char* mFault;
    const char* mCheck;
    const char* mResult;
    const char* mSaying;
};
constexpr const char* kNullAccess = kIsSanitized ? "It ended the whole process" : "SIGSEGV";
constexpr SMade kMade[] = {
    {"", "description.names", "failed", "The package has no name."},
    {"", "description.category", "failed", "in no category"},
    {"nostem", "description.stems", "failed", "No output stem is described"},
    {"twofields", "description.fields", "failed", "The field 2 is described twice."},
    {"", "description.procedures", "warning", "No procedure makes an editor"},
    {"renamed", "description.stable", "failed", "describes itself in another way: '"},
    {"kept", "description.nothing-left", "failed", "never gave back"},
    {"returned", "life-cycle.references", "failed",
     "gives back more references to the host than it took: 3 more."},
    {"", "robustness.hidden-streams", "failed", kNullAccess},
    {"trusting", "robustness.missing-interfaces", "failed", kNullAccess},
    {"twice", "robustness.initialised-twice", "failed", "SIGABRT"},
    {"exchange", "robustness.timer", "failed", "start an endless exchange with the host: "},
    {"left-when-refused", "robustness.host-refuses", "failed",
     "After a host refused AddName, 1 object of the module is left."},
    {"unregistered", "automation.registered", "failed",
     "'00000' (The \"level\") is automatable and not registered"},
    {"echoing", "automation.settles", "failed",
     "starts an endless exchange of values with the host: 21 requests in 20 cycles"},
    {"held", "automation.no-touch-left", "failed", "'00000' (The \"level\") stays touched"},
    {"foreign", "state.foreign", "failed",
     "changed it: '00000' (The \"level\") was saved at 1.0000 and comes back at 0.2500."},
    {"left", "life-cycle.deletes", "failed",
     "After one instance was made and deleted, 1 object of the module is left."},
    {"twonames", "parameters.list", "failed", "Two parameters have the identifier 'Level'."},
    {"", "parameters.short-names", "failed", "no name for a display of 1 characters"},
    {"", "parameters.defaults", "failed", "starts at 1.0000 and not at its default of 0.0000"},
    {"", "parameters.steps", "failed", "has no number of steps"},
    {"", "parameters.text-round-trip", "failed", "has no text for 0."},
    {"", "parameters.texts", "failed", "has no text for its value of 1.0000 in 4 characters."},
    {"", "parameters.unknown", "failed", "The identifier 'nobody' of no parameter has a value, "},
    {"", "editor.object", "failed", "makes no editor object"},
    {"", "robustness.null-arguments", "failed", kNullAccess}};

TEST(Check, WhatAModuleDoesWrongFailsItsCheck)
{
    for (const SMade& row : kMade)
    {
        SCOPED_TRACE(row.mCheck);
        if (row.mCheck == std::string("editor.object") && !CVirtualDisplay::IsInstalled())
            continue;
        setenv("FAKE_MODULE_FAULT", row.mFault, 1);
        const SToolRun run = RunTool({AAXHOST, "check", FAKE_MODULE_FILE, "--only", row.mCheck});
        unsetenv("FAKE_MODULE_FAULT");
        EXPECT_NE(run.mOutput.find(fmt::format("{:<8} {}", row.mResult, row.mCheck)), std::string::npos)
            << run.mOutput << run.mErrors;
        EXPECT_NE(run.mOutput.find(row.mSaying), std::string::npos) << run.mOutput << run.mErrors;
    }
}

TEST(Check, EachHasAFaultThatItFinds)
{
    CheckNames found = {"description.opens", "rendering.late-latency"}; // in other tests
    for (const SFaulty& row : FaultyPlugins())
        found.merge(row.All());
    for (const SAlone& row : kAlone)
        found.insert(row.mCheck);
    for (const SClaimed& row : kClaimed)
        found.insert(row.mCheck);
    for (const SMade& row : kMade)
        found.insert(row.mCheck);
    CheckNames missing;
    for (const SCheck& check : AllChecks())
        if (!found.contains(check.mName))
            missing.insert(check.mName);
    EXPECT_EQ(missing, CheckNames());
}
} // namespace
