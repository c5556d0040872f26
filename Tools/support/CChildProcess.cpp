#include "Tools/support/CChildProcess.h"

#include "Tools/support/Watcher.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fmt/format.h>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
/** @return milliseconds for poll, at least 0; those of an hour where it is more. */
int Left(CChildProcess::Clock::time_point inDeadline)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(inDeadline - CChildProcess::Clock::now());
    return static_cast<int>(std::clamp<std::chrono::milliseconds::rep>(left.count(), 0, 3'600'000));
}

/** A pipe that other programs do not inherit. */
class CPipe
{
public:
    CPipe()
    {
        if (pipe(mEnds.data()) != 0)
            throw std::system_error(errno, std::generic_category(), "A pipe cannot be made");
        for (const int end : mEnds)
            (void)fcntl(end, F_SETFD, FD_CLOEXEC); // else the other program only has one end more
    }
    CPipe(const CPipe&) = delete;
    CPipe& operator=(const CPipe&) = delete;
    ~CPipe()
    {
        CloseReading();
        CloseWriting();
    }
    int Reading() const { return mEnds[0]; }
    int Writing() const { return mEnds[1]; }
    void CloseReading() { Close(TakeReading()); }
    void CloseWriting() { Close(std::exchange(mEnds[1], -1)); }
    int TakeReading() { return std::exchange(mEnds[0], -1); }

private:
    static void Close(int inEnd)
    {
        if (inEnd >= 0)
            (void)close(inEnd);
    }
    std::array<int, 2> mEnds{-1, -1};
};

/** @return false when the parent has ended before it said so. */
bool MayBegin(CPipe& inGo)
{
    inGo.CloseWriting();
    char go = 0;
    ssize_t count = 0;
    while ((count = read(inGo.Reading(), &go, 1)) < 0 && errno == EINTR)
    {
    }
    inGo.CloseReading();
    return count == 1;
}

/** An exception must not go on in the copy as if it were the parent: it ends it. */
[[noreturn]] void Do(const std::function<void(int)>& inBody, int inReport) noexcept
{
    inBody(inReport);
    _exit(EXIT_SUCCESS);
}

/** Returns only where the program cannot be run, with errno. */
void BecomeProgram(const std::string& inProgram, const std::vector<std::string>& inArguments, int inReport)
{
    const int output = fcntl(inReport, F_DUPFD, STDERR_FILENO + 1);
    SilenceStandardFiles();
    (void)dup2(output, STDOUT_FILENO);
    (void)close(output);
    std::vector<char*> arguments{const_cast<char*>(inProgram.c_str())}; // the interface's type; not written
    for (const std::string& argument : inArguments)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    (void)execvp(inProgram.c_str(), arguments.data());
}
} // namespace

CChildProcess::CChildProcess(const std::function<void(int)>& inBody) { Start(inBody); }

// Delegates, so that what was started ends where an exception leaves this.
CChildProcess::CChildProcess(const std::string& inProgram, const std::vector<std::string>& inArguments)
    : CChildProcess()
{
    CPipe failure; // the other program closes it, which is the good news
    Start(
        [&](int inReport)
        {
            BecomeProgram(inProgram, inArguments, inReport);
            const int error = errno;
            (void)!write(failure.Writing(), &error, sizeof error); // untold, the report is just empty
        });
    failure.CloseWriting();
    int error = 0;
    ssize_t count = 0;
    while ((count = read(failure.Reading(), &error, sizeof error)) < 0 && errno == EINTR)
    {
    }
    if (count == sizeof error)
        throw std::system_error(error, std::generic_category(), inProgram);
}

void CChildProcess::Start(const std::function<void(int)>& inBody)
{
    StartWatcher();                      // first, so that the child can note there as well
    (void)std::signal(SIGCHLD, SIG_DFL); // where it came to us ignored, no child could be waited for
    CPipe report;
    CPipe go; // nothing is done before the watcher knows of the child
    mProcess = fork();
    if (mProcess < 0)
        throw std::system_error(errno, std::generic_category(), "No process can be started");
    if (mProcess == 0)
    {
        (void)setpgid(0, 0); // the parent does it as well: who is first wins
        if (!MayBegin(go))
            _exit(EXIT_FAILURE);
        report.CloseReading();
        Do(inBody, report.Writing());
    }
    (void)setpgid(mProcess, mProcess);
    WatchGroup(mProcess);
    const char begin = 1;
    (void)!write(go.Writing(), &begin, 1); // this process can read it, too, and so it has a reader
    mReport = report.TakeReading();
}

CChildProcess::~CChildProcess()
{
    if (mProcess <= 0)
        return;
    (void)kill(-mProcess, SIGKILL); // fails when all of the group have ended
    Unwatch(mProcess);
    while (waitpid(mProcess, nullptr, 0) < 0 && errno == EINTR)
    {
    }
    (void)close(mReport);
}

std::optional<std::string> CChildProcess::Read(Clock::time_point inDeadline)
{
    for (int left = Left(inDeadline); left > 0; left = Left(inDeadline))
    {
        pollfd report{mReport, POLLIN, 0};
        if (poll(&report, 1, left) <= 0)
            continue;
        std::array<char, 65536> bytes{};
        const ssize_t count = read(mReport, bytes.data(), bytes.size());
        if (count > 0)
            return std::string(bytes.data(), static_cast<std::size_t>(count));
        if (count == 0 || errno != EINTR)
            return std::nullopt;
    }
    return std::nullopt;
}

std::optional<std::string> CChildProcess::ReadLine(Clock::time_point inDeadline)
{
    while (true)
    {
        const std::size_t end = mUnread.find('\n');
        if (end != std::string::npos)
        {
            std::string line = mUnread.substr(0, end);
            mUnread.erase(0, end + 1);
            return line;
        }
        const std::optional<std::string> more = Read(inDeadline);
        if (!more)
            return std::nullopt;
        mUnread += *more;
    }
}

SChildEnd CChildProcess::Wait(Clock::time_point inDeadline)
{
    while (true)
    {
        // It is left to be waited for: until then its number, and the group's, is nobody else's.
        siginfo_t end{};
        if (waitid(P_PID, static_cast<id_t>(mProcess), &end, WEXITED | WNOHANG | WNOWAIT) == 0 &&
            end.si_pid == mProcess)
            return {end.si_code == CLD_EXITED ? SChildEnd::EKind::Exit : SChildEnd::EKind::Signal,
                    end.si_status,
                    {}};
        if (Left(inDeadline) == 0)
            return {SChildEnd::EKind::Limit, 0, {}};
        (void)poll(nullptr, 0, 2); // milliseconds: no call waits for a process with a time limit
    }
}

void SilenceStandardFiles()
{
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        (void)dup2(nothing, file); // what stays open only shows what the plug-in prints
    if (nothing > STDERR_FILENO)
        (void)close(nothing);
}

std::string NameOfSignal(int inSignal)
{
    struct SName
    {
        int mSignal;
        const char* mName;
    };
    for (const SName& name : {SName{SIGSEGV, "SIGSEGV"}, SName{SIGBUS, "SIGBUS"}, SName{SIGABRT, "SIGABRT"},
                              SName{SIGFPE, "SIGFPE"}, SName{SIGILL, "SIGILL"}, SName{SIGTRAP, "SIGTRAP"},
                              SName{SIGSYS, "SIGSYS"}, SName{SIGPIPE, "SIGPIPE"}, SName{SIGKILL, "SIGKILL"},
                              SName{SIGTERM, "SIGTERM"}, SName{SIGINT, "SIGINT"}, SName{SIGHUP, "SIGHUP"},
                              SName{SIGQUIT, "SIGQUIT"}, SName{SIGALRM, "SIGALRM"}, SName{SIGXCPU, "SIGXCPU"},
                              SName{SIGXFSZ, "SIGXFSZ"}})
        if (name.mSignal == inSignal)
            return fmt::format("{}, {}", strsignal(inSignal), name.mName);
    return fmt::format("signal {}", inSignal);
}
