#pragma once
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

/**
 * A program run in a process group of its own, whose standard output is read line by line.
 *
 * Its standard input and error go nowhere. Whatever is left of the group ends with this object.
 */
class CChildProcess
{
public:
    using Clock = std::chrono::steady_clock;

    /** @param inProgram a path, or a name to look for along PATH. Throws std::system_error. */
    CChildProcess(const std::string& inProgram, const std::vector<std::string>& inArguments);
    CChildProcess(const CChildProcess&) = delete;
    CChildProcess& operator=(const CChildProcess&) = delete;
    ~CChildProcess();

    /** @return the next whole line; nothing when the output has ended or the time is over. */
    std::optional<std::string> ReadLine(Clock::time_point inDeadline);
    /** @return how the program ended as waitpid tells it; nothing when it still runs at that time. */
    std::optional<int> Wait(Clock::time_point inDeadline);

private:
    pid_t mProcess = -1;
    int mOutput = -1;
    bool mEnded = false;
    std::string mUnread;
};
