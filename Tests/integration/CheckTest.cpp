#include "Tests/integration/CVirtualDisplay.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tests/integration/ToolRun.h"
#include "Tools/aaxhost/window/CHostWindow.h"
#include "Tools/aaxhost/window/SPicture.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
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

std::string Contents(const fs::path& inFile)
{
    std::ifstream file(inFile, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/** One run of `aaxhost check`, on demand with an X server beside it where one is installed. */
struct SCheckRun
{
    SCheckRun(const fs::path& inModule, const fs::path& inPlugin,
              const std::vector<std::string>& inArguments = {}, bool inWithDisplay = false)
        : mBundle(inModule, inPlugin)
    {
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

struct SBroken
{
    const char* mPlugin;
    Names mFails;        // exactly these checks
    const char* mSaying; // a part of the first one's reason
    friend void PrintTo(const SBroken& inBroken, std::ostream* outStream) { *outStream << inBroken.mPlugin; }
};

class BrokenPlugin : public testing::TestWithParam<SBroken>
{
};

TEST_P(BrokenPlugin, MakesItsOwnChecksFailAndNoOther)
{
    const SBroken& broken = GetParam();
    const std::string plugin = broken.mPlugin;
    if (kIsSanitized && (plugin == "BrokenLeak" || plugin == "BrokenHeap" || plugin == "BrokenBlocking"))
        GTEST_SKIP() << "the sanitizer has replaced what is watched here";
    const bool needsDisplay = broken.mFails.contains("editor.gestures");
    if (needsDisplay && !CVirtualDisplay::IsInstalled())
        GTEST_SKIP() << "Xvfb is not installed";
    const bool hangs = broken.mFails.contains("life-cycle.creates");
    std::vector<std::string> arguments = {"--strictness", "5"};
    if (hangs)
        arguments.insert(arguments.end(), {"--limit", "1"});
    const SCheckRun run(kPlainModule, fs::path(BROKEN_PLUGINS) / (plugin + ".so"), arguments, needsDisplay);
    EXPECT_EQ(run.With("failed"), broken.mFails) << run.mRun.mOutput << run.mRun.mErrors;
    EXPECT_EQ(run.mRun.mExit, 1);
    EXPECT_NE(run.ReasonOf(*broken.mFails.begin()).find(broken.mSaying), std::string::npos)
        << run.ReasonOf(*broken.mFails.begin());
    EXPECT_NE(run.mRun.mOutput.find("Not fit to ship."), std::string::npos);
    for (const std::string& name : hangs ? run.With("passed") : Names())
        EXPECT_TRUE(name.starts_with("description.")) << name << " is called good without an instance";
}

INSTANTIATE_TEST_SUITE_P(
    Each, BrokenPlugin,
    testing::Values(
        SBroken{"BrokenIdentity", {"description.identity"}, "product id"},
        SBroken{"BrokenOpen", {"life-cycle.creates"}, "limit of 1 seconds"},
        SBroken{"BrokenLeak", {"life-cycle.memory"}, "memory grows"},
        SBroken{"BrokenShared", {"life-cycle.independent"}, "changes it in another"},
        SBroken{"BrokenCopies", {"life-cycle.independent"}, "beside an instance with another one"},
        SBroken{"BrokenStatic", {"life-cycle.any-order", "robustness.everything"}, "SIGABRT"},
        SBroken{
            "BrokenRest", {"parameters.at-rest", "state.new-instance"}, "(Gain) moves from 0.8000 to 0.3000"},
        SBroken{"BrokenAutomation", {"automation.dense"}, "SIGABRT"},
        SBroken{"BrokenReports", {"automation.answers"}, "and for 3 more in the 3 cycles after them"},
        SBroken{"BrokenStart",
                {"automation.before-coefficients"},
                "(Gain) is at 0.8000 when they and 64 frames are done; automated later, at 0.1000"},
        SBroken{"BrokenGestures", {"editor.gestures"}, "never ends"},
        SBroken{"BrokenNotes", {"midi.note-ends"}, "still sounds"},
        SBroken{
            "BrokenBounds", {"rendering.guards"}, "In a block of 1 frames output 2 was written at frame 1"},
        SBroken{"BrokenSilence",
                {"rendering.writes-outputs"},
                "In a block of 512 frames, 512 of them are not written in output 2 of 2"},
        SBroken{"BrokenPointers", {"rendering.large-blocks"}, "In blocks of 2048 frames, output 1 is"},
        SBroken{"BrokenNumbers", {"rendering.beyond-full-scale", "rendering.full-scale"}, "not a number"},
        SBroken{"BrokenLatency", {"rendering.latency"}, "reports a latency of 64 samples"},
        SBroken{"BrokenHeap", {"rendering.allocations"}, "The wrapped plug-in allocates"},
        SBroken{"BrokenBlocking",
                {"rendering.locks", "rendering.system-calls"},
                "The wrapped plug-in takes locks"},
        SBroken{"BrokenTempo", {"transport.moving-tempo", "transport.tempos"}, "SIGABRT"},
        SBroken{"BrokenMemory", {"state.new-instance", "state.round-trip"}, "was saved at"},
        SBroken{"BrokenLoad", {"state.answers"}, "(Gain) is at 0."},
        SBroken{"BrokenChunk", {"state.damaged", "state.random", "state.truncated"}, "SIGABRT"}),
    [](const testing::TestParamInfo<SBroken>& inInfo) { return std::string(inInfo.param.mPlugin); });

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
        if (CVirtualDisplay::IsInstalled() && plugin == kSynthPlugin)
        {
            EXPECT_TRUE(run.With("passed").contains("editor.deleted-open")) << run.mRun.mOutput;
        }
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

TEST(Check, TwoRunsPrintTheSame)
{
    const std::vector<std::string> arguments = {"--strictness", "2"};
    const SCheckRun first(kPlainModule, fs::path(BROKEN_PLUGINS) / "BrokenNumbers.so", arguments);
    const SCheckRun second(kPlainModule, fs::path(BROKEN_PLUGINS) / "BrokenNumbers.so", arguments);
    EXPECT_EQ(first.mRun.mOutput, second.mRun.mOutput);
    EXPECT_EQ(first.mResults["checks"], second.mResults["checks"]);
}

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
         {SRow{{"--list"}, 0, "rendering.guards"},
          SRow{{module, "--only", "rendering.guards", "--only", "state.sizes"},
               0,
               "2 checks: 2 passed. Fit to ship."},
          SRow{{module, "--only", "rendering.beauty"}, 2, "There is no check 'rendering.beauty'"},
          SRow{{module, "--strictness", "11"}, 2, "11"}, SRow{{}, 2, "MODULE"},
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

fs::path PictureOf(const fs::path& inPage, int inWidth)
{
    return inPage.parent_path() / (std::to_string(inWidth) + ".png");
}

/** How many different colours a picture shows up to that column. */
std::size_t Colours(const SPicture& inPicture, int inWidth)
{
    std::set<std::array<std::uint8_t, 3>> colours;
    const auto* pixel = inPicture.mPixels.data();
    for (int y = 0; y < inPicture.mHeight; ++y)
        for (int x = 0; x < inPicture.mWidth; ++x, pixel += 3)
            if (x < inWidth)
                colours.insert({pixel[0], pixel[1], pixel[2]});
    return colours.size();
}

std::string Attribute(std::string inText)
{
    for (const auto& [character, entity] : {std::pair{"&", "&amp;"}, std::pair{"\"", "&quot;"}})
        for (auto at = inText.find(character); at != std::string::npos; at = inText.find(character, at + 1))
            inText.replace(at, 1, entity);
    return inText;
}

SToolRun RunBrowser(const fs::path& inPage, const std::vector<std::string>& inArguments)
{
    std::vector<std::string> command = {"/usr/bin/chromium", "--headless=new", "--no-sandbox",
                                        "--disable-gpu",
                                        "--user-data-dir=" + (inPage.parent_path() / "browser").string()};
    command.insert(command.end(), inArguments.begin(), inArguments.end());
    command.push_back("file://" + inPage.string());
    return RunTool(command);
}

/** How a browser lays the page out in a frame of that width, which its own window cannot be as narrow as.
 * Leaves a picture of the frame beside the page. */
std::string AskBrowser(const fs::path& inPage, int inWidth)
{
    const fs::path asking = inPage.parent_path() / "asking.html";
    std::ofstream(asking, std::ios::binary)
        << "<!DOCTYPE html><iframe id=f style='border:0' height=900 width=" << inWidth << " srcdoc=\""
        << Attribute(Contents(inPage)) << "\"></iframe><script>addEventListener('load',()=>{"
        << "const d=document.getElementById('f').contentDocument,w=d.documentElement.clientWidth,out=[];"
        << "for(const e of d.querySelectorAll('body *')){const r=e.getBoundingClientRect();"
        << "if(r.width>0&&(r.right>w+0.5||r.left<-0.5))out.push(e.tagName+'.'+e.getAttribute('class'))}"
        << "document.title='asked '+w+' wide, '+d.documentElement.scrollWidth+' to scroll, '"
        << "+d.querySelectorAll('ul.checks li').length+' checks, outside:'+out.slice(0,5).join(' "
           "')})</script>";
    (void)RunBrowser(asking,
                     {"--window-size=1400,1000", "--screenshot=" + PictureOf(inPage, inWidth).string()});
    const SToolRun run = RunBrowser(asking, {"--window-size=1400,1000", "--dump-dom"});
    const auto begin = run.mOutput.find("asked ");
    return begin == std::string::npos ? run.mErrors
                                      : run.mOutput.substr(begin, run.mOutput.find("</title>") - begin);
}

TEST(Report, NamesEveryCheckAndFitsBothWidths)
{
    std::string folder = (fs::temp_directory_path() / "report_XXXXXX").string();
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    const fs::path page = fs::path(folder) / "page.html";
    const SCheckRun run(kPlainModule, kDelayPlugin, {"--report", page.string()});
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

    if (!fs::exists("/usr/bin/chromium"))
        GTEST_SKIP() << "chromium is not installed, so the layout was not looked at";
    const std::string checks = std::to_string(run.mResults["checks"].size());
    for (const int width : {360, 1280})
    {
        SCOPED_TRACE(width);
        const std::string answer = AskBrowser(page, width);
        // A frame's scroll bar takes its part of the width.
        int wide = 0;
        int scroll = 0;
        ASSERT_EQ(std::sscanf(answer.c_str(), "asked %d wide, %d to scroll", &wide, &scroll), 2) << answer;
        EXPECT_GT(wide, width - 40);
        EXPECT_EQ(scroll, wide);
        EXPECT_NE(answer.find(checks + " checks, outside:"), std::string::npos) << answer;
        EXPECT_TRUE(answer.ends_with("outside:")) << answer;
        const auto picture = ReadPng(PictureOf(page, width));
        ASSERT_TRUE(picture) << picture.Problem().mSentence;
        EXPECT_GT(Colours(*picture, width), 50U) << "blank, or next to it";
    }
    fs::remove_all(folder);
}
} // namespace
