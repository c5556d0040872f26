#include "Tests/integration/CVirtualDisplay.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tests/integration/ToolRun.h"
#include "Tools/aaxhost/window/CHostWindow.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

namespace
{
namespace fs = std::filesystem;
using Names = std::set<std::string>;

#ifdef AAXADAPTER_SANITIZED
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

/** One run of `aaxhost check`, on demand with an X server beside it where one is installed. */
struct SCheckRun
{
    SCheckRun(const fs::path& inModule, const fs::path& inPlugin,
              const std::vector<std::string>& inArguments = {}, bool inWithDisplay = false,
              const fs::path& inFeatures = {})
        : mBundle(inModule, inPlugin)
    {
        if (!inFeatures.empty())
            fs::copy_file(inFeatures, mBundle.SourceVst().replace_filename("features.txt"));
        if (inWithDisplay && CVirtualDisplay::IsInstalled())
        {
            EXPECT_EQ(mDisplay.Start(), "");
            auto window = CHostWindow::Create("keeps the server");
            EXPECT_TRUE(window);
            if (window)
                mKeepsServer = std::move(*window);
        }
        std::vector<std::string> command = {AAXHOST, "check", mBundle.Path().string(), "--json",
                                            File("json")};
        command.insert(command.end(), inArguments.begin(), inArguments.end());
        mRun = RunTool(command);
        if (fs::exists(File("json")))
            mResults = nlohmann::json::parse(Contents(File("json")));
    }
    std::string File(const std::string& inExtension) const
    {
        return (mBundle.Path().parent_path() / ("result." + inExtension)).string();
    }
    Names With(const std::string& inResult) const
    {
        Names names;
        for (const auto& check : mResults.value("checks", nlohmann::json::array()))
            if (check["result"] == inResult)
                names.insert(check["name"].get<std::string>());
        return names;
    }
    std::string ReasonOf(const std::string& inName) const
    {
        for (const auto& check : mResults.value("checks", nlohmann::json::array()))
            if (check["name"] == inName)
                return check["reason"].get<std::string>();
        return "no such check";
    }

    CModuleBundle mBundle;
    CVirtualDisplay mDisplay;
    std::unique_ptr<CHostWindow> mKeepsServer; // which ends with its last client, and checks come and go
    SToolRun mRun;
    nlohmann::json mResults;
};

struct SFaulty
{
    const char* mPlugin;
    Names mFails;        // exactly these checks
    const char* mSaying; // a part of the first one's reason
    friend void PrintTo(const SFaulty& inFaulty, std::ostream* outStream) { *outStream << inFaulty.mPlugin; }
};

class FaultyPlugin : public testing::TestWithParam<SFaulty>
{
};

TEST_P(FaultyPlugin, MakesItsOwnChecksFailAndNoOther)
{
    const SFaulty& faulty = GetParam();
    const std::string plugin = faulty.mPlugin;
    if (kIsSanitized && (plugin == "Leak" || plugin == "Heap" || plugin == "Blocking"))
        GTEST_SKIP() << "the sanitizer has replaced what is watched here";
    const bool needsDisplay = faulty.mFails.contains("editor.gestures");
    if (needsDisplay && !CVirtualDisplay::IsInstalled())
        GTEST_SKIP() << "Xvfb is not installed";
    const bool hangs = faulty.mFails.contains("life-cycle.creates");
    std::vector<std::string> arguments = {"--strictness", "5"};
    if (hangs)
        arguments.insert(arguments.end(), {"--limit", "1"});
    const SCheckRun run(kPlainModule, fs::path(FAULTY_PLUGINS) / ("faulty_" + plugin + ".so"), arguments,
                        needsDisplay);
    EXPECT_EQ(run.With("failed"), faulty.mFails) << run.mRun.mOutput << run.mRun.mErrors;
    EXPECT_EQ(run.mRun.mExit, 1);
    EXPECT_NE(run.ReasonOf(*faulty.mFails.begin()).find(faulty.mSaying), std::string::npos)
        << run.ReasonOf(*faulty.mFails.begin());
    EXPECT_NE(run.mRun.mOutput.find("Not fit to ship."), std::string::npos);
    for (const std::string& name : hangs ? run.With("passed") : Names())
        EXPECT_TRUE(name.starts_with("description.")) << name << " is called good without an instance";
}

INSTANTIATE_TEST_SUITE_P(
    Each, FaultyPlugin,
    testing::Values(
        SFaulty{"Identity", {"description.identity"}, "product id"},
        SFaulty{"HangInOpen", {"life-cycle.creates"}, "limit of 1 seconds"},
        SFaulty{"Leak", {"life-cycle.memory"}, "memory grows"},
        SFaulty{"Shared", {"life-cycle.independent"}, "changes it in another"},
        SFaulty{"Copies", {"life-cycle.independent"}, "beside an instance with another one"},
        SFaulty{"Static", {"life-cycle.any-order", "robustness.everything"}, "SIGABRT"},
        SFaulty{"Rest", {"parameters.at-rest", "state.new-instance"}, "(Gain) moves from 0.8000 to 0.3000"},
        SFaulty{"Automation", {"automation.dense"}, "SIGABRT"},
        SFaulty{"Reports", {"automation.answers"}, "and for 3 more in the 3 cycles after them"},
        SFaulty{"Start",
                {"automation.before-coefficients"},
                "(Gain) is at 0.8000 when they and 64 frames are done; automated later, at 0.1000"},
        SFaulty{"Gestures", {"editor.gestures"}, "never ends"},
        SFaulty{"Notes", {"midi.note-ends"}, "still sounds"},
        SFaulty{"Bounds", {"rendering.bounds"}, "In a block of 1 frames output 2 was written at frame 1"},
        SFaulty{"Silence",
                {"rendering.writes-outputs"},
                "In a block of 512 frames, 512 of them are not written in output 2 of 2"},
        SFaulty{"Pointers", {"rendering.large-blocks"}, "In blocks of 2048 frames, output 1 is"},
        SFaulty{"Numbers", {"rendering.beyond-full-scale", "rendering.full-scale"}, "not a number"},
        SFaulty{"Latency", {"rendering.latency"}, "reports a latency of 64 samples"},
        SFaulty{"Heap", {"rendering.allocations"}, "The wrapped plug-in allocates"},
        SFaulty{"Blocking", {"rendering.locks", "rendering.system-calls"}, "The wrapped plug-in takes locks"},
        SFaulty{"Tempo", {"transport.moving-tempo", "transport.tempos"}, "SIGABRT"},
        SFaulty{"Memory", {"state.new-instance", "state.round-trip"}, "was saved at"},
        SFaulty{"Load", {"state.answers"}, "(Gain) is at 0."},
        SFaulty{"Chunk", {"state.damaged", "state.random", "state.truncated"}, "SIGABRT"}),
    [](const testing::TestParamInfo<SFaulty>& inInfo) { return std::string(inInfo.param.mPlugin); });

TEST(Check, AFeatureThatIsOnlyClaimedFailsItsCheckAndNoOther)
{
    struct SRow
    {
        const char* mPlugin; // makes use of one feature
        const char* mCheck;
        const char* mSaying;
        bool mIsOfAny = false; // the others make use of that feature too
    };
    const SRow rows[] = {
        {"FollowsTempo", "features.time", "the module sounds the same"},
        {"LateLatency", "features.latency", "144 samples; the host was told 0."},
        {"AsksForRate", "features.host-answers", "output 1 differs from frame 0 on"},
        {"WorksIdle", "features.idle", "output 1 differs from frame 512 on"},
        {"Widens", "features.resize", "becomes 320 by 240 pixels"},
        {"SendsMidi", "features.midi-output", "field 24 is no output node"},
        {"TakesDumps", "features.sysex", "output 1 differs from frame 24000 on"},
        {"HasPrograms", "features.program-first", "(Gain) is at 0.8000"},
        {"NamesOutputs", "features.output-names", "Auxiliary output 1 has no name."},
        {"None", "features.parameter-sync", "to 0.25 and is told 0.8000.", true},
        {"WritesUnits", "features.value-texts", "'0.80', and the plug-in writes '0.80 %'.", true}};
    const fs::path claims = kAllFeaturesModule.parent_path().parent_path() / "Resources" / "features.txt";
    std::vector<std::string> arguments;
    for (const SRow& row : rows)
        if (!row.mIsOfAny)
            arguments.insert(arguments.end(), {"--only", row.mCheck});
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.mCheck);
        if (row.mPlugin == std::string("Widens") && !CVirtualDisplay::IsInstalled())
            continue;
        const fs::path plugin = fs::path(FAULTY_PLUGINS) / fmt::format("faulty_{}.so", row.mPlugin);
        if (row.mIsOfAny)
            arguments = {"--only", row.mCheck};
        const SCheckRun claimed(kOptionsModule, plugin, arguments, true, claims);
        EXPECT_EQ(claimed.With("failed"), Names{row.mCheck}) << claimed.mRun.mOutput;
        EXPECT_EQ(claimed.With("passed"), Names());
        EXPECT_NE(claimed.ReasonOf(row.mCheck).find(row.mSaying), std::string::npos)
            << claimed.ReasonOf(row.mCheck);
        const SCheckRun built(kAllFeaturesModule, plugin, arguments, true, claims);
        EXPECT_EQ(built.With("passed"), Names{row.mCheck}) << built.mRun.mOutput;
        EXPECT_EQ(built.With("failed"), Names());
    }
}

TEST(Check, BothExamplesPass)
{
    for (const auto& [plugin, latency] :
         {std::pair{kSynthPlugin, "skipped"}, std::pair{kDelayPlugin, "passed"}})
    {
        SCOPED_TRACE(plugin);
        const SCheckRun run(kPlainModule, plugin, {}, true);
        EXPECT_EQ(run.With("failed"), Names()) << run.mRun.mOutput;
        EXPECT_EQ(run.With("warning"), Names()) << run.mRun.mOutput;
        EXPECT_EQ(run.mRun.mExit, 0) << run.mRun.mErrors;
        EXPECT_TRUE(run.With(latency).contains("rendering.latency"));
        EXPECT_GE(run.mResults["checks"].size(), 100U);
        const bool hasEditor = CVirtualDisplay::IsInstalled() && plugin == kSynthPlugin;
        EXPECT_EQ(run.With("passed").contains("editor.deleted-open"), hasEditor) << run.mRun.mOutput;
    }
}

class RealPlugin : public testing::TestWithParam<const char*>
{
};

TEST_P(RealPlugin, PassesAtStrictnessFive)
{
    const fs::path plugin = InstalledPlugin(GetParam());
    if (plugin.empty())
        GTEST_SKIP() << GetParam() << " is not installed";
    if (kIsSanitized && plugin.filename().string().starts_with("Dragonfly"))
        GTEST_SKIP()
            << "it reads on behind a state that does not end in a zero, and the sanitizer ends the process";
    const SCheckRun run(kOptionsModule, plugin, {}, true);
    EXPECT_EQ(run.With("failed"), Names()) << run.mRun.mOutput;
    EXPECT_EQ(run.mRun.mExit, 0) << run.mRun.mErrors;
}

INSTANTIATE_TEST_SUITE_P(Each, RealPlugin, testing::Values("Kars", "MVerb", "3BandEQ", "DragonflyRoomReverb"),
                         [](const testing::TestParamInfo<const char*>& inInfo)
                         { return std::string("Plugin").append(inInfo.param); });

TEST(Check, CommandLineIsTakenAtItsWord)
{
    const CModuleBundle bundle(kPlainModule, kDelayPlugin);
    const std::string module = bundle.Path().string();
    struct SRow
    {
        std::vector<std::string> mArguments;
        int mExit;
        const char* mSays;
    };
    for (const SRow& row :
         {SRow{{module, "--only", "rendering.bounds", "--only", "state.sizes"},
               0,
               "2 checks: 2 passed. Fit to ship."},
          SRow{{module, "--only", "rendering.beauty"}, 2, "There is no check 'rendering.beauty'"},
          SRow{{"/nowhere.aaxplugin", "--only", "description.opens"},
               1,
               "There is no module at '/nowhere.aaxplugin'."},
          SRow{{module, "--only", "state.sizes", "--report", "/nowhere/page.html"}, 1, "cannot be written"}})
    {
        SCOPED_TRACE(row.mSays);
        std::vector<std::string> command = {AAXHOST, "check"};
        command.insert(command.end(), row.mArguments.begin(), row.mArguments.end());
        const SToolRun run = RunTool(command);
        EXPECT_EQ(run.mExit, row.mExit) << run.mOutput << run.mErrors;
        EXPECT_NE((run.mOutput + run.mErrors).find(row.mSays), std::string::npos)
            << run.mOutput << run.mErrors;
        EXPECT_EQ(run.mOutput.find('\r'), std::string::npos) << "no progress bar in a pipe";
    }
}

TEST(Report, NamesEveryCheckAndFetchesNothing)
{
    const CModuleBundle folder(kPlainModule, kDelayPlugin);
    const std::string page = folder.Path().parent_path() / "page.html";
    const SCheckRun run(kPlainModule, kDelayPlugin, {"--report", page});
    ASSERT_EQ(run.mRun.mExit, 0) << run.mRun.mOutput << run.mRun.mErrors;
    const std::string html = Contents(page);
    for (const auto& check : run.mResults["checks"])
        EXPECT_NE(html.find("<code>" + check["name"].get<std::string>() + "</code>"), std::string::npos)
            << check["name"];
    for (const char* forbidden : {"<script", "http://", "https://", "url(", "<link", "@import"})
        EXPECT_EQ(html.find(forbidden), std::string::npos) << forbidden;
    for (const char* part :
         {"reported latency, 64 samples", "level as rendered", "Impulse at -6 dB: spectrum"})
        EXPECT_NE(html.find(part), std::string::npos) << part;
    EXPECT_NE(html.find("the plug-in alone"), std::string::npos) << "the plug-in alone could not be measured";
}
} // namespace
