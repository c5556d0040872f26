#include "Tests/doubles/faulty/FaultyPlugin.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tests/support/CTestFolder.h"
#include "Tests/support/FileContents.h"
#include "Tests/support/ToolRun.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include <sys/wait.h>

namespace
{
namespace fs = std::filesystem;
using Json = nlohmann::json;

/** A folder with plug-ins, and a survey of it that looks at three checks only. */
class Survey : public testing::Test
{
protected:
    void Put(const fs::path& inPlugin, const std::string& inName) const
    {
        fs::create_directories((Plugins() / inName).parent_path());
        fs::copy(inPlugin, Plugins() / inName, fs::copy_options::overwrite_existing);
    }
    fs::path Plugins() const { return mFolder / "plugins"; }
    fs::path Output() const { return mFolder / "output"; }
    std::vector<std::string> CommandLine(const std::vector<std::string>& inMore = {}) const
    {
        std::vector<std::string> command{AAXHOST, "survey", Plugins(), "--output", Output()};
        for (const char* check : {"life-cycle.creates", "rendering.full-scale", "life-cycle.independent"})
            command.insert(command.end(), {"--only", check});
        command.insert(command.end(), inMore.begin(), inMore.end());
        return command;
    }
    SToolRun Run(const std::vector<std::string>& inMore = {}) const { return RunTool(CommandLine(inMore)); }
    Json Results() const { return Json::parse(Contents(Output() / "results.json"), nullptr, false); }
    /** By name: the verdict, and how many checks failed through the module, by themselves and unknown why. */
    std::map<std::string, std::string> Rows() const
    {
        std::map<std::string, std::string> rows;
        const Json results = Results();
        for (const Json& row : results["plugins"])
            rows[row["name"]] =
                row["verdict"].get<std::string>() + ' ' + row["failed_only_through_the_module"].dump() + ' ' +
                row["failed_by_itself"].dump() + ' ' + row["failed_for_reasons_unknown"].dump();
        return rows;
    }

    const CTestFolder mTestFolder;
    const fs::path& mFolder = mTestFolder.Path();
};

using Rows = std::map<std::string, std::string>;

TEST_F(Survey, HasARowForEachPluginAndSaysWhoseFaultItIs)
{
    Put(kDelayPlugin, "Delay.so");
    Put(Faulty("None"), "deep/below/Delay.so");
    Put(Faulty("Numbers"), "Numbers.so");
    Put(Faulty("Grows"), "Grows.so");         // whose chunk only the module has to save
    Put(Faulty("Demanding"), "Demanding.so"); // loads with one ENTRY_VERSION only
    Put(Faulty("NoEntry"), "other.lv2/NoEntry.so");
    fs::create_directory_symlink(Plugins(), Plugins() / "deep" / "round"); // leads back
    std::ofstream(Plugins() / "Text & <b>.so") << "no plug-in";
    std::ofstream(Plugins() / "Notes.txt") << "no plug-in";
    const SToolRun run = Run({"--jobs", "2", "--no-pages"});
    EXPECT_EQ(run.mExit, 1) << run.mErrors;
    EXPECT_EQ(Rows(), (::Rows{{"Delay (below)", "fit 0 0 0"},
                              {"Delay (plugins)", "fit 0 0 0"},
                              {"Demanding", "fit 0 0 0"},
                              {"Numbers", "not fit 0 1 0"},
                              {"Text & <b>", "refused 0 0 0"},
                              {"Grows", "not fit 1 0 0"}}))
        << run.mOutput << run.mErrors;
    const std::string page = Contents(Output() / "index.html");
    for (const char* part : {"3 of 6 plug-ins fit to ship", "Text &amp; &lt;b&gt;",
                             "Cannot be wrapped: ", "rendering.full-scale"})
        EXPECT_NE(page.find(part), std::string::npos) << part;
}

TEST_F(Survey, ExitsByWhatCameOfAll)
{
    struct SRow
    {
        const char* mPlugin;
        std::vector<std::string> mMore;
        int mExit;
    };
    for (const SRow& row :
         {SRow{"None", {}, 0}, SRow{"None", {"--skip", "*"}, 3}, SRow{"None", {"--features"}, 0},
          SRow{"WrongMagic", {}, 1}, SRow{"None", {"--only", "no.such"}, 2},
          SRow{"None", {"--name-pattern", "other*"}, 2}, SRow{"None", {"--jobs", "0"}, 2},
          SRow{"None", {"/nowhere"}, 2}})
    {
        SCOPED_TRACE(row.mPlugin + testing::PrintToString(row.mMore));
        Put(Faulty(row.mPlugin), "Plugin.so");
        std::vector<std::string> more = row.mMore;
        more.emplace_back("--no-pages");
        const SToolRun run = Run(more);
        EXPECT_EQ(run.mExit, row.mExit) << run.mOutput << run.mErrors;
    }
}

TEST_F(Survey, DoesAgainOnlyWhatChanged)
{
    Put(Faulty("None"), "One.so");
    Put(Faulty("None"), "Two.so");
    const auto kept = [&](std::vector<std::string> more = {})
    {
        more.emplace_back("--no-pages");
        const std::string output = Run(more).mOutput;
        std::set<std::string> names;
        for (const char* name : {"One", "Two"})
            if (output.find("(from before)", output.find(name)) < output.find('\n', output.find(name)))
                names.insert(name);
        return names;
    };
    using Names = std::set<std::string>;
    EXPECT_EQ(kept(), Names());
    EXPECT_EQ(kept(), (Names{"One", "Two"}));
    Put(Faulty("Numbers"), "Two.so");
    EXPECT_EQ(kept(), Names{"One"});
    EXPECT_EQ(Rows()["Two"], "not fit 0 1 0");
    const std::vector<std::string> featured{"--features", "--only", "features.value-texts"};
    EXPECT_EQ(kept(featured), Names()) << "another product";
    EXPECT_EQ(Results()["plugins"][0]["groups"]["features"]["passed"], 1) << "else it would be skipped";
    std::ofstream(Output() / "results" / "One.json") << "{ cut";
    EXPECT_EQ(kept(featured), Names{"Two"});
}

TEST_F(Survey, AnInterruptLeavesNoProcessAndWhatIsDone)
{
    Put(Faulty("None"), "A #1.so");
    Put(Faulty("HangInOpen"), "B.so");
    fs::create_directories(mFolder / "temporary");
    const pid_t process =
        StartTool(CommandLine({"--jobs", "1", "--limit", "600"}), mFolder / "errors", mFolder / "temporary");
    ASSERT_GT(process, 0);
    // The second hangs in vst2probe then, which is a process of a process of the first.
    const std::string hanging = (Plugins() / "B.so").string();
    EXPECT_TRUE(Becomes(
        [&]
        { return fs::exists(Output() / "results" / "A #1.json") && ProcessesWith("cmdline", hanging) > 0; }));
    ASSERT_EQ(kill(process, SIGINT), 0);
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
    EXPECT_TRUE(
        Becomes([&] { return ProcessesWith("cmdline", mFolder) + ProcessesWith("environ", mFolder) == 0; }));
    EXPECT_TRUE(Becomes([&] { return fs::is_empty(mFolder / "temporary"); }));
    EXPECT_EQ(Rows(), (::Rows{{"A #1", "fit 0 0 0"}}));
    const std::string page = Contents(Output() / "index.html");
    for (const char* part : {"1 plug-in still to do", "href=\"plug-ins/A%20%231.html\""})
        EXPECT_NE(page.find(part), std::string::npos) << part;
    const std::string own = Contents(Output() / "plug-ins" / "A #1.html");
    EXPECT_NE(own.find("Once more: <code>aaxhost survey '"), std::string::npos);
}
} // namespace
