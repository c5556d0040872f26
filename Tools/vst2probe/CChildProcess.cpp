#include "Tools/vst2probe/CChildProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern "C"
{
    extern char** environ; // not every system's header declares it
}

namespace
{
void Check(int inError, const char* inWhat)
{
    if (inError != 0)
    {
        throw std::system_error(inError, std::generic_category(), inWhat);
    }
}

class CSpawnSettings
{
public:
    explicit CSpawnSettings(int inOutput)
    {
        Check(posix_spawn_file_actions_init(&actions), "posix_spawn_file_actions_init");
        Check(posix_spawnattr_init(&attributes), "posix_spawnattr_init");
        Check(posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0),
              "/dev/null");
        Check(posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0),
              "/dev/null");
        Check(posix_spawn_file_actions_adddup2(&actions, inOutput, STDOUT_FILENO), "dup2");
        Check(posix_spawnattr_setpgroup(&attributes, 0), "setpgroup");
        Check(posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP), "setflags");
    }
    CSpawnSettings(const CSpawnSettings&) = delete;
    CSpawnSettings& operator=(const CSpawnSettings&) = delete;
    ~CSpawnSettings()
    {
        (void)posix_spawn_file_actions_destroy(&actions); // can't fail for what was initialised
        (void)posix_spawnattr_destroy(&attributes);
    }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

/** @return milliseconds for poll, at least 0. */
int Left(CChildProcess::Clock::time_point inDeadline)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(inDeadline - CChildProcess::Clock::now());
    return static_cast<int>(std::clamp<std::chrono::milliseconds::rep>(left.count(), 0, 3'600'000));
}
} // namespace

CChildProcess::CChildProcess(const std::string& inProgram, const std::vector<std::string>& inArguments)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
    {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    mOutput = ends[0];
    (void)fcntl(ends[0], F_SETFD, FD_CLOEXEC); // else the child would only have two ends more
    (void)fcntl(ends[1], F_SETFD, FD_CLOEXEC);
    std::vector<char*> arguments{const_cast<char*>(inProgram.c_str())};
    for (const std::string& argument : inArguments)
    {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    int error = 0;
    try
    {
        const CSpawnSettings settings(ends[1]);
        error = posix_spawnp(&mProcess, inProgram.c_str(), &settings.actions, &settings.attributes,
                             arguments.data(), environ);
    }
    catch (const std::system_error& failure)
    {
        error = failure.code().value();
    }
    (void)close(ends[1]); // the child has its own
    if (error != 0)
    {
        (void)close(mOutput);
        Check(error, inProgram.c_str());
    }
}

CChildProcess::~CChildProcess()
{
    (void)kill(-mProcess, SIGKILL); // fails when all of the group have ended
    if (!mEnded)
    {
        int status = 0;
        while (waitpid(mProcess, &status, 0) < 0 && errno == EINTR)
        {
        }
    }
    (void)close(mOutput);
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
        pollfd output{mOutput, POLLIN, 0};
        const int ready = poll(&output, 1, Left(inDeadline));
        if (ready == 0)
        {
            return std::nullopt;
        }
        std::array<char, 4096> bytes{};
        const ssize_t count = ready > 0 ? read(mOutput, bytes.data(), bytes.size()) : -1;
        if (count == 0 || (count < 0 && errno != EINTR))
        {
            return std::nullopt;
        }
        mUnread.append(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

std::optional<int> CChildProcess::Wait(Clock::time_point inDeadline)
{
    int status = 0;
    while (!mEnded)
    {
        const pid_t result = waitpid(mProcess, &status, WNOHANG);
        mEnded = result == mProcess;
        if (!mEnded && Left(inDeadline) == 0)
        {
            return std::nullopt;
        }
        if (!mEnded)
        {
            (void)poll(nullptr, 0, 2); // milliseconds: no call waits for a process with a time limit
        }
    }
    return status;
}
