#include "Tests/integration/ModuleBundle.h"
#include "Tests/integration/ToolRun.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

fs::path Faulty(const std::string& inFault)
{
    return fs::path(FAULTY_PLUGINS) / ("faulty_" + inFault + ".so");
}

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

/** Whether the condition holds within some seconds. */
template <class Condition>
bool Becomes(Condition inCondition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!inCondition())
    {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        (void)poll(nullptr, 0, 5);
    }
    return true;
}

/** @return how many processes have the text in a file of theirs below /proc, but for this one. */
int ProcessesWith(const char* inFile, const std::string& inText)
{
    int count = 0;
    std::error_code none; // processes come and go
    for (const fs::directory_entry& process : fs::directory_iterator("/proc", none))
        count += process.path().filename() != std::to_string(getpid()) &&
                 Contents(process.path() / inFile).find(inText) != std::string::npos;
    return count;
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

pid_t Start(const std::vector<std::string>& inCommand, const std::string& inErrors,
            const std::string& inTemporary)
{
    std::vector<char*> arguments;
    for (const std::string& argument : inCommand)
        arguments.push_back(const_cast<char*>(argument.c_str())); // the interface's type; nothing is written
    arguments.push_back(nullptr);
    std::string temporary = "TMPDIR=" + inTemporary;
    char* environment[] = {temporary.data(), nullptr};
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, inErrors.c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t all;
    sigfillset(&all);
    posix_spawnattr_setsigdefault(&attributes, &all); // whoever runs the tests may ignore interrupts
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    pid_t process = -1;
    if (posix_spawn(&process, arguments[0], &files, &attributes, arguments.data(), environment) != 0)
        process = -1;
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return process;
}

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
        Start(CommandLine(what, bundle, target.File()), folder / "errors", folder / "temporary");
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
