#include "Tools/aaxhost/check/ChildRun.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{
using Clock = std::chrono::steady_clock;

/** The last byte of a whole text; a process that dies before leaves none. */
constexpr char kWhole = '\x04';

/** A folder of its own for what plug-ins write into the home folder. */
class CFreshHome
{
public:
    CFreshHome()
    {
        std::error_code ignored; // without a folder the plug-in gets a home that does not exist
        mPath = (fs::temp_directory_path(ignored) / "aaxhost_XXXXXX").string();
        mIsMade = mkdtemp(mPath.data()) != nullptr;
    }
    CFreshHome(const CFreshHome&) = delete;
    CFreshHome& operator=(const CFreshHome&) = delete;
    ~CFreshHome()
    {
        std::error_code ignored; // a temporary folder that stays harms nobody
        if (mIsMade)
            fs::remove_all(mPath, ignored);
    }
    const std::string& Path() const { return mPath; }

private:
    std::string mPath;
    bool mIsMade = false;
};

void SilenceStandardFiles()
{
    const int nothing = open("/dev/null", O_RDWR);
    for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        (void)dup2(nothing, file); // what stays open only shows what the plug-in prints
}

void WriteAll(int inFile, const std::string& inText)
{
    for (std::size_t done = 0; done < inText.size();)
    {
        const ssize_t count = write(inFile, inText.data() + done, inText.size() - done);
        if (count < 0 && errno != EINTR)
            return; // the end mark stays away, and so the parent sees that it was cut
        done += static_cast<std::size_t>(count > 0 ? count : 0);
    }
}

[[noreturn]] void BeChild(const std::function<std::string()>& inWork, int inPipe, const std::string& inHome,
                          double inSeconds)
{
    (void)setpgid(0, 0); // the parent does it as well: who is first wins
    // Should the parent be killed, the child ends by itself a little after its limit.
    (void)alarm(static_cast<unsigned>(std::ceil(inSeconds)) + 5);
    const rlimit noCore{0, 0};
    (void)setrlimit(RLIMIT_CORE, &noCore); // only saves time
    (void)setenv("HOME", inHome.c_str(), 1);
    SilenceStandardFiles();
    WriteAll(inPipe, inWork() + kWhole);
    // Nothing of the copied process is torn down twice, and nothing of the plug-in's is left to fail.
    _exit(0);
}

/** @return false when the time was over first. */
bool ReadAll(int inPipe, Clock::time_point inDeadline, std::string& outText)
{
    while (outText.empty() || outText.back() != kWhole)
    {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(inDeadline - Clock::now()).count();
        pollfd file{inPipe, POLLIN, 0};
        const int ready = left > 0 ? poll(&file, 1, static_cast<int>(left)) : 0;
        if (ready == 0)
            return false;
        std::array<char, 65536> bytes{};
        const ssize_t count = ready > 0 ? read(inPipe, bytes.data(), bytes.size()) : -1;
        if (count == 0 || (count < 0 && errno != EINTR))
            return true;
        outText.append(bytes.data(), static_cast<std::size_t>(count > 0 ? count : 0));
    }
    return true;
}

SChildEnd EndOf(pid_t inChild, bool inInTime, std::string inText)
{
    SChildEnd end;
    const bool isWhole = !inText.empty() && inText.back() == kWhole;
    // A process that has said everything, or none in time, is not waited for.
    if (isWhole || !inInTime)
        (void)kill(-inChild, SIGKILL);
    int status = 0;
    while (waitpid(inChild, &status, 0) < 0 && errno == EINTR)
    {
    }
    (void)kill(-inChild, SIGKILL); // what it started; fails when nothing is left
    if (isWhole)
    {
        inText.pop_back();
        end.mKind = SChildEnd::EKind::Finished;
        end.mText = std::move(inText);
    }
    else if (!inInTime)
        end.mKind = SChildEnd::EKind::Limit;
    else if (WIFSIGNALED(status))
    {
        end.mKind = SChildEnd::EKind::Signal;
        end.mNumber = WTERMSIG(status);
    }
    else
    {
        end.mKind = SChildEnd::EKind::Exit;
        end.mNumber = WEXITSTATUS(status);
    }
    return end;
}
} // namespace

SChildEnd RunInChild(const std::function<std::string()>& inWork, double inSeconds)
{
    const CFreshHome home;
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
        return {};
    const auto deadline =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(inSeconds));
    const pid_t child = fork();
    if (child == 0)
    {
        (void)close(ends[0]);
        BeChild(inWork, ends[1], home.Path(), inSeconds);
    }
    (void)close(ends[1]);
    SChildEnd end;
    if (child > 0)
    {
        (void)setpgid(child, child); // fails when the child has done it and gone
        std::string text;
        const bool inTime = ReadAll(ends[0], deadline, text);
        end = EndOf(child, inTime, std::move(text));
    }
    (void)close(ends[0]);
    return end;
}

std::string NameOfSignal(int inSignal)
{
    const char* name = nullptr;
    switch (inSignal)
    {
    case SIGSEGV: name = "segmentation fault"; break;
    case SIGBUS: name = "bus error"; break;
    case SIGABRT: name = "abort"; break;
    case SIGFPE: name = "arithmetic error"; break;
    case SIGILL: name = "illegal instruction"; break;
    case SIGKILL: name = "kill"; break;
    case SIGTRAP: name = "trap"; break;
    case SIGPIPE: name = "broken pipe"; break;
    default: return fmt::format("signal {}", inSignal);
    }
    return fmt::format("{} (signal {})", name, inSignal);
}
