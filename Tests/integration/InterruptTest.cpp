#include "Tests/doubles/faulty/FaultyPlugin.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tests/support/FileContents.h"
#include "Tests/support/ToolRun.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <fstream>
#include <set>
#include <tuple>
#include <vector>

#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

constexpr const char* kCommands[] = {"state", "check", "page", "bench", "render", "save-state", "preset"};

/** The command that writes inTarget. */
std::vector<std::string> CommandLine(const std::string& inWhat, const CModuleBundle& inBundle,
                                     const std::string& inTarget)
{
    const std::string module = inBundle.Path();
    const std::string plugin = inBundle.SourceVst();
    if (inWhat == "state")
        return {AAXHOST, "state", module, "save", inTarget};
    if (inWhat == "check")
        return {AAXHOST, "check", module, "--only", "life-cycle.creates", "--json", inTarget};
    if (inWhat == "page")
        return {AAXHOST, "check", module, "--only", "life-cycle.creates", "--report", inTarget};
    if (inWhat == "bench")
        return {AAXHOST, "bench", module, "--turns", "1", "--instances", "1", "--json", inTarget};
    if (inWhat == "render")
        return {AAXHOST, "render", module, "--seconds", "1", "--output", inTarget};
    if (inWhat == "save-state")
        return {AAXHOST, "render", module, "--output", "/dev/null", "--save-state", inTarget};
    return {VST2PROBE_FILE, "preset", "save", plugin, inTarget};
}

/** A folder with the old file, which is to stay as it is. */
class CTarget
{
public:
    explicit CTarget(const fs::path& inFolder) : mFolder(inFolder)
    {
        fs::create_directories(mFolder);
        std::ofstream(File()) << kOld;
        mBefore = Listing();
    }
    std::string File() const { return mFolder / "file"; }
    void ExpectUntouched() const
    {
        EXPECT_EQ(Contents(File()), kOld);
        EXPECT_EQ(Listing(), mBefore);
    }

private:
    std::set<fs::path> Listing() const { return {fs::directory_iterator(mFolder), fs::directory_iterator()}; }
    static constexpr char kOld[] = "what was there before";
    fs::path mFolder;
    std::set<fs::path> mBefore;
};

struct SInterrupt
{
    int mSignal;
    const char* mSaying;
    friend void PrintTo(const SInterrupt& inInterrupt, std::ostream* outStream)
    {
        *outStream << strsignal(inInterrupt.mSignal);
    }
};

class Interrupt : public testing::TestWithParam<std::tuple<SInterrupt, const char*>>
{
};

TEST_P(Interrupt, LeavesTheOldFileAndNothingElse)
{
    const auto& [interrupt, what] = GetParam();
    const CModuleBundle bundle(kPlainModule, Faulty("HangInOpen"));
    const fs::path folder = bundle.Path().parent_path();
    const CTarget target(folder / "target");
    fs::create_directories(folder / "temporary");
    const pid_t process =
        StartTool(CommandLine(what, bundle, target.File()), folder / "errors", folder / "temporary");
    ASSERT_GT(process, 0);
    // A plug-in that is loaded hangs a little later; the first process never loads it.
    EXPECT_TRUE(Becomes([&] { return ProcessesWith("maps", bundle.SourceVst()) > 0; }));
    ASSERT_EQ(kill(process, interrupt.mSignal), 0);
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == interrupt.mSignal) << status;
    EXPECT_NE(Contents(folder / "errors").find(interrupt.mSaying), std::string::npos)
        << Contents(folder / "errors");
    EXPECT_TRUE(Becomes([&] { return ProcessesWith("cmdline", folder) == 0; }));
    EXPECT_TRUE(fs::is_empty(folder / "temporary"));
    target.ExpectUntouched();
}

INSTANTIATE_TEST_SUITE_P(Commands, Interrupt,
                         testing::Combine(testing::Values(SInterrupt{SIGINT, "an interrupt (SIGINT)"},
                                                          SInterrupt{SIGTERM, "a request to end (SIGTERM)"},
                                                          SInterrupt{SIGHUP, "a lost terminal (SIGHUP)"},
                                                          SInterrupt{SIGKILL, ""}),
                                          testing::ValuesIn(kCommands)));

TEST(FullDisk, LeavesTheOldFileAndSaysSo)
{
    const CModuleBundle bundle(kPlainModule, Faulty("None"));
    const fs::path disk = bundle.Path().parent_path() / "disk";
    fs::create_directories(disk);
    if (mount("none", disk.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "No small disk can be mounted: " << std::strerror(errno) << ".";
    const CTarget target(disk / "target");
    std::ofstream(disk / "filling") << std::string(65536, 'x'); // as far as it goes
    for (const char* what : kCommands)
    {
        SCOPED_TRACE(what);
        const SToolRun run = RunTool(CommandLine(what, bundle, target.File()));
        EXPECT_EQ(run.mExit, 1);
        EXPECT_NE(run.mErrors.find("No space left on device"), std::string::npos) << run.mErrors;
        target.ExpectUntouched();
    }
    EXPECT_EQ(umount(disk.c_str()), 0);
}

TEST(UnreadOutput, IsNoCrashOfThePlugin)
{
    const CModuleBundle bundle(kPlainModule, Faulty("None"));
    const SToolRun run = RunTool(
        {"/bin/sh", "-c", R"((sleep 0.3; "$0" describe "$1"; echo $? >&2) | :)", AAXHOST, bundle.Path()});
    EXPECT_EQ(run.mErrors, std::to_string(128 + SIGPIPE) + '\n');
}

TEST(CrashingPlugin, IsToldWithWhatWasBeingDone)
{
#ifdef AAXADAPTER_SANITIZED
    GTEST_SKIP() << "The sanitizer tells of a crash itself.";
#endif
    struct SRow
    {
        const char* mFault;
        std::vector<std::string> mCommand; // behind which the module stands
        const char* mSentence;
    };
    for (const SRow& row :
         {SRow{"CrashInEntry",
               {"describe"},
               "crashed (Segmentation fault, SIGSEGV) while the module was being opened."},
          SRow{"ExitInEntry", {"bench"}, "ended the program (exit 3) while the module was being opened."},
          SRow{"CrashInOpen", {"state", "save", "/dev/null"}, "SIGSEGV) while an instance was being made."},
          SRow{"CrashInRender", {"render", "--output", "/dev/null"}, "SIGSEGV) while it was rendering."}})
    {
        SCOPED_TRACE(row.mFault);
        const CModuleBundle bundle(kPlainModule, Faulty(row.mFault));
        std::vector<std::string> command = row.mCommand;
        command.insert(command.begin() + 1, bundle.Path());
        command.insert(command.begin(), AAXHOST);
        const SToolRun run = RunTool(command);
        EXPECT_EQ(run.mExit, 1);
        EXPECT_EQ(run.mOutput, "");
        EXPECT_TRUE(run.mErrors.starts_with("The plug-in ")) << run.mErrors;
        EXPECT_TRUE(run.mErrors.ends_with(row.mSentence + std::string("\n"))) << run.mErrors;
        command.insert(command.begin() + 1, "--in-process");
        EXPECT_EQ(RunTool(command).mErrors, "") << "it is this process that the debugger sees";
    }
}
} // namespace
