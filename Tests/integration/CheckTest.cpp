#include "Source/plugins/ProductFeatures.h"
#include "Tests/doubles/faulty/FaultyPlugin.h"
#include "Tests/integration/CheckRun.h"
#include "Tests/support/CTestFolder.h"
#include "Tests/support/FileContents.h"
#include "Tests/support/ToolRun.h"
#include "Tools/aaxhost/check/CCheckContext.h"
#include "Tools/aaxhost/check/CheckSummary.h"
#include "Tools/aaxhost/check/Explanation.h"
#include "Tools/aaxhost/window/CVirtualDisplay.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

namespace
{
namespace fs = std::filesystem;

TEST(Check, WhatIsSaidOfAPluginIsNotWhatItsNumbersSay)
{
    struct SRow
    {
        const char* mPlugin;
        const char* mCheck;
        const char* mResult;
        const char* mFault;
        const char* mSaying;
        bool mHasFeatures = false;
    };
    for (const SRow& row :
         {SRow{"Switch", "state.round-trip", "passed", "", "('soft') and comes back at 0.0000 ('soft')."},
          SRow{"Switch", "state.new-instance", "passed", "", "('soft') and comes back at 0.0000 ('soft')."},
          SRow{"HasPrograms", "state.round-trip", "failed", "module",
               "the feature PROGRAM_FIRST mends that."},
          SRow{"HasPrograms", "state.round-trip", "passed", "", "", true},
          SRow{"LateLatency", "rendering.late-latency", "failed", "module",
               "The feature LATENCY tells the host."},
          SRow{"LateLatency", "rendering.late-latency", "passed", "", "and the host is told 144.", true},
          SRow{"Unset", "rendering.finite", "failed", "plug-in", "not a number"}})
    {
        SCOPED_TRACE(std::string(row.mPlugin) + (row.mHasFeatures ? " with all features" : ""));
        const SCheckRun run(row.mHasFeatures ? kAllFeaturesModule : kPlainModule, Faulty(row.mPlugin),
                            {"--only", row.mCheck});
        EXPECT_EQ(run.Told(row.mCheck, "result"), row.mResult);
        EXPECT_EQ(run.Told(row.mCheck, "fault"), row.mFault);
        EXPECT_NE(run.ReasonOf(row.mCheck).find(row.mSaying), std::string::npos) << run.ReasonOf(row.mCheck);
    }
}

TEST(Check, APluginThatCrashesByChanceIsNotTheModulesFault)
{
    const CTestFolder folder;
    setenv("FAULTY_LIVES", folder.File("lives").c_str(), 1);
    const SCheckRun run(kPlainModule, Faulty("CrashMostly"), {"--only", "rendering.full-scale"});
    unsetenv("FAULTY_LIVES");
    EXPECT_EQ(run.Told("rendering.full-scale", "result"), "failed"); // in both runs through the module
    EXPECT_EQ(run.Told("rendering.full-scale", "fault"), "plug-in"); // in its next run alone
}

TEST(Check, WithoutADisplayNobodyKnowsWhetherAnEditorIsFit)
{
    setenv("DISPLAY", ":65000", 1);
    for (const auto& [plugin, result, says] :
         {std::tuple{kSynthPlugin, "unseen", "Not known to be fit: There is no X server"},
          std::tuple{kDelayPlugin, "skipped", "Not known to be fit: nothing was checked."}})
    {
        const SCheckRun run(kPlainModule, plugin, {"--only", "editor.opens"});
        EXPECT_EQ(run.mRun.mExit, 3) << run.mRun.mOutput;
        EXPECT_EQ(run.Told("editor.opens", "result"), result);
        EXPECT_NE(run.mRun.mOutput.find(says), std::string::npos) << run.mRun.mOutput;
    }
    unsetenv("DISPLAY");
}

/** What is true of instances of a module only: they have a parameter that the plug-in does not. */
bool IsOfModule(CCheckContext& ioContext) { return !ioContext.MakeInstance()->MasterBypassID().empty(); }

TEST(CheckRunner, RepeatsWithThePluginAloneAndACrashByTurns)
{
    static const CModuleBundle bundle(kPlainModule, kDelayPlugin);
    static const SFinding failed = SFinding::Failed("It does.");
    static const SFinding warned = SFinding::Warning("It does.");
    static const auto crashAtFirst = [](std::uintmax_t inRuns)
    {
        const fs::path runs = bundle.Path() / fmt::format("crashed_{}", inRuns);
        std::ofstream(runs, std::ios::app) << 'x';
        if (fs::file_size(runs) <= inRuns)
            std::abort();
        return SFinding::Passed();
    };
    const std::string crash = "It crashed: Aborted, SIGABRT.";
    struct SRow
    {
        SCheck mCheck;
        SFinding mFinding;
        EFault mFault;
    };
    const SRow rows[] = {
        {{"life-cycle.module", "", 1,
          [](auto& context) { return IsOfModule(context) ? failed : SFinding(); }},
         failed,
         EFault::Module},
        {{"life-cycle.worse", "", 1, [](auto& context) { return IsOfModule(context) ? failed : warned; }},
         failed,
         EFault::Module},
        {{"life-cycle.both", "", 1, [](auto&) { return warned; }}, warned, EFault::Plugin},
        {{"life-cycle.unknown", "", 1,
          [](auto& context) { return IsOfModule(context) ? warned : SFinding::Skipped("Nothing."); }},
         warned,
         EFault::Unknown},
        {{"description.both", "", 1, [](auto&) { return failed; }, EAlone::Nothing}, failed, EFault::Module},
        {{"features.crash", "", 1, [](auto&) { return crashAtFirst(99); }, EAlone::Compared},
         SFinding::Failed(crash),
         EFault::Unknown},
        {{"life-cycle.always", "", 1, [](auto&) { return crashAtFirst(99); }},
         SFinding::Failed(crash),
         EFault::Plugin},
        {{"life-cycle.once", "", 1, [](auto&) { return crashAtFirst(1); }},
         {EVerdict::Unstable, "First: " + crash + " Then, in run 2: passed."},
         EFault::Unknown},
        {{"life-cycle.by-chance", "", 1, [](auto&) { return crashAtFirst(2); }},
         {EVerdict::Unstable, "First: " + crash + " Then, in run 3: passed."},
         EFault::Unknown},
        {{"life-cycle.crashes", "", 1,
          [](auto& context) { return IsOfModule(context) ? crashAtFirst(99) : SFinding(); }},
         SFinding::Failed(crash),
         EFault::Module},
    };
    SCheckJob job;
    job.mModule = bundle.Path().string();
    for (const SRow& row : rows)
        job.mChecks.push_back(&row.mCheck);
    const auto results = RunChecks(job);
    ASSERT_EQ(results.size(), std::size(rows));
    for (std::size_t i = 0; i < results.size(); ++i)
    {
        EXPECT_TRUE(results[i].mFinding == rows[i].mFinding)
            << rows[i].mCheck.mName << ": " << results[i].mFinding.mReason;
        EXPECT_EQ(results[i].mFault, rows[i].mFault) << rows[i].mCheck.mName;
    }
    EXPECT_EQ(CountsInWords(results), "10 checks: 8 failed (4 only through the module, 1 the plug-in's own), "
                                      "2 of them unstable, 2 warnings.");
    EXPECT_EQ(FitnessOf(results), EFitness::NotFit);
}

TEST(Check, BothExamplesPass)
{
    for (const auto& [plugin, latency] :
         {std::pair{kSynthPlugin, "skipped"}, std::pair{kDelayPlugin, "passed"}})
    {
        SCOPED_TRACE(plugin);
        const SCheckRun run(kPlainModule, plugin);
        EXPECT_EQ(run.With("failed"), CheckNames()) << run.mRun.mOutput;
        EXPECT_EQ(run.With("warning"), CheckNames()) << run.mRun.mOutput;
        EXPECT_EQ(run.mRun.mExit, CVirtualDisplay::IsInstalled() || plugin == kDelayPlugin ? 0 : 3);
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
    const SCheckRun run(kOptionsModule, plugin);
    EXPECT_EQ(run.With("failed"), CheckNames()) << run.mRun.mOutput;
    EXPECT_EQ(run.mRun.mExit, 0) << run.mRun.mErrors;
}

INSTANTIATE_TEST_SUITE_P(Each, RealPlugin, testing::Values("Kars", "MVerb", "3BandEQ", "DragonflyRoomReverb"),
                         [](const testing::TestParamInfo<const char*>& inInfo)
                         { return std::string("Plugin").append(inInfo.param); });

TEST(Check, CommandLineIsTakenAtItsWord)
{
    const CModuleBundle bundle(kPlainModule, kDelayPlugin);
    const std::string module = bundle.Path().string();
    const auto file = [&](const char* name) { return (bundle.Path().parent_path() / name).string(); };
    std::ofstream(file("skip")) << "# known\n\n rendering.b?unds  \trounding <1> \r\nmidi\n";
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
          SRow{{module, "--only", "state", "--only", "transport.t*", "--jobs", "2", "--repeat", "2"},
               0,
               "15 checks: 15 passed. Fit to ship."},
          SRow{{module, "--only", "*.bounds", "--only", "state.sizes", "--skip", "@" + file("skip")},
               0,
               "Left out: rounding <1>\n"},
          SRow{{module, "--skip", "@/nowhere"}, 2, "The file '/nowhere' cannot be read."},
          SRow{{module, module, "--only", "state.sizes", "--quiet"},
               0,
               "1 check: 1 passed. Fit to ship.\n\n== "},
          SRow{{module, module, "--json", file("json")}, 2, "--json and --report take one module"},
          SRow{{module, "--only", "rendering.odd-blocks", "--blocks", "64,128"},
               3,
               "--blocks names none that this check goes through."},
          SRow{{module, "--blocks", "64,0", "--only", "state.sizes"}, 2, "'0' is not a whole number from 1"},
          SRow{{module, "--rates", "96000,fast", "--only", "state.sizes"},
               2,
               "'fast' is not a number from 1000"},
          SRow{{module, "--only", "state.sizes", "--in-process"}, 0, "passed   state.sizes"},
          SRow{{module, "--in-process"}, 2, "--in-process takes one check"},
          SRow{{module, "--only", "rendering.beauty"}, 2, "There is no check 'rendering.beauty'"},
          SRow{{"--explain", "rendering.beauty"}, 2, "There is no check 'rendering.beauty'"},
          SRow{{"--explain", "transport.l*"}, 0, "transport.loop, from strictness 3\n  A short loop does"},
          SRow{{module, "--markdown"}, 2, "--markdown requires --explain"},
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

TEST(Check, GoesThroughTheRatesAndBlocksThatItIsAskedFor)
{
    const CTestFolder folder;
    const std::string page = folder.File("sizes.html");
    const SCheckRun rates(kPlainModule, Faulty("Rates"), // fails above 100 kHz
                          {"--only", "rendering.rates", "--rates", "48000,96000", "--report", page});
    EXPECT_EQ(rates.With("passed"), CheckNames{"rendering.rates"}) << rates.mRun.mOutput;
    EXPECT_EQ(rates.mResults["rates"], nlohmann::json({48000.0, 96000.0}));
    EXPECT_NE(Contents(page).find("--rates 48000,96000"), std::string::npos) << "the run cannot be repeated";
    const SCheckRun blocks(kPlainModule, Faulty("Pairs"), // fails in odd blocks
                           {"--only", "rendering.bounds", "--blocks", "64,512"});
    EXPECT_EQ(blocks.With("passed"), CheckNames{"rendering.bounds"}) << blocks.mRun.mOutput;
    EXPECT_EQ(blocks.mResults["blocks"], nlohmann::json({64, 512}));
    setenv("AAXHOST_CHECK_BLOCKS", "64,511", 1);
    const SCheckRun odd(kPlainModule, Faulty("Pairs"), {"--only", "rendering.bounds"});
    unsetenv("AAXHOST_CHECK_BLOCKS");
    EXPECT_EQ(odd.With("failed"), CheckNames{"rendering.bounds"}) << odd.mRun.mOutput;
}

TEST(Explanations, AreOfEveryCheckAndOfNoOther)
{
    for (const SCheck& check : AllChecks())
    {
        SCOPED_TRACE(check.mName);
        const SExplanation* const explanation = FindExplanation(check.mName);
        ASSERT_NE(explanation, nullptr);
        for (const std::string part : {explanation->mDoes, explanation->mMatters, explanation->mMend})
            EXPECT_TRUE(part.ends_with('.')) << "a part is missing or breaks off: '" << part << "'";
    }
    CheckNames names;
    for (const SExplanation& explanation : AllExplanations())
    {
        EXPECT_NE(FindCheck(explanation.mCheck), nullptr) << explanation.mCheck;
        EXPECT_TRUE(names.insert(explanation.mCheck).second) << explanation.mCheck << " is explained twice";
    }
}

TEST(Explanations, FitATerminalAndAreTheDocumentsPage)
{
    std::istringstream lines(RunTool({AAXHOST, "check", "--explain", "*"}).mOutput);
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_LE(line.size(), 100U) << line;
    EXPECT_GT(count, 5 * AllChecks().size());
    const fs::path page = fs::path(AAXADAPTER_SOURCE_DIR) / "docs" / "checks.md";
    EXPECT_EQ(RunTool({AAXHOST, "check", "--explain", "*", "--markdown"}).mOutput, Contents(page))
        << "Make it anew: aaxhost check --explain '*' --markdown > docs/checks.md";
}

TEST(Check, EachFeatureHasOneAndItsRowInTheDocuments)
{
    const std::string page = Contents(fs::path(AAXADAPTER_SOURCE_DIR) / "docs" / "features.md");
    CheckNames features;
    for (const SCheck& check : AllChecks())
        if (const std::string text = check.mDescription; check.Group() == "features")
        {
            const std::string feature = text.substr(0, text.find(':'));
            features.insert(feature);
            const std::regex row(fmt::format("\\n\\| `{}` \\|.*\\| `{}` \\|\\n", feature, check.mName));
            EXPECT_TRUE(std::regex_search(page, row)) << feature;
        }
    EXPECT_EQ(features, CheckNames(std::begin(kProductFeatureNames), std::end(kProductFeatureNames)));
}

TEST(Check, ABuildServerReadsWhatFailedAndWhatWasLeftOut)
{
    const CModuleBundle sound(kPlainModule, kDelayPlugin);
    const CModuleBundle broken(kPlainModule, Faulty("Load"));
    const fs::path page = sound.Path().parent_path() / "junit.xml";
    const SToolRun run = RunTool({AAXHOST, "check", sound.Path(), broken.Path(), "--only", "state.answers",
                                  "--only", "state.same-*", "--skip", "state.same-sound", "--junit", page});
    EXPECT_EQ(run.mExit, 1) << run.mOutput << run.mErrors;
    const std::string xml = Contents(page);
    const std::string suites[] = {
        fmt::format(R"(<testsuite name="{}" tests="4" failures="0" errors="0" skipped="1")",
                    sound.Path().string()),
        fmt::format(R"(<testsuite name="{}" tests="4" failures="1" errors="0" skipped="1")",
                    broken.Path().string())};
    for (const std::string& part :
         {suites[0], suites[1], std::string(R"(<skipped message="Left out."/>)"),
          std::string(R"(<failure type="failed" message="With a host that answers at-once, )"),
          std::string("(the plug-in's own: it does so without the module)\"/></testcase>"),
          std::string("<system-out>warning: A state that was loaded")})
        EXPECT_NE(xml.find(part), std::string::npos) << part << " is not in\n" << xml;
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
    for (const char* part : {"reported latency, 64 samples", "level as rendered",
                             "Impulse at -6 dB: spectrum", "Once more: <code>aaxhost check "})
        EXPECT_NE(html.find(part), std::string::npos) << part;
    EXPECT_NE(html.find("the plug-in alone"), std::string::npos) << "the plug-in alone could not be measured";
}
} // namespace
