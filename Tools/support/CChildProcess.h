#pragma once
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

/** How a process ended. */
struct SChildEnd
{
    enum class EKind
    {
        Finished, // with mText
        Signal,   // mNumber: which
        Exit,     // without a word; mNumber: the exit code
        Limit,    // still running then
        NotStarted
    };
    EKind mKind = EKind::NotStarted;
    int mNumber = 0;
    std::string mText; // what the work returned
};

/**
 * A process in a process group of its own, whose report is read through a pipe.
 *
 * Whatever is left of the group ends with this object, and with this process however that ends (Watcher.h).
 * This process may have one thread only.
 */
class CChildProcess
{
public:
    using Clock = std::chrono::steady_clock;

    /**
     * Copies this process; the copy does inBody and ends with code 0, and nothing is torn down in it.
     * @param inBody  gets the descriptor that it reports by.
     * Throws std::system_error.
     */
    explicit CChildProcess(const std::function<void(int)>& inBody);
    /**
     * Another program, which reports by its standard output; its standard input and error go nowhere.
     * @param inProgram a path, or a name to look for along PATH.
     * Throws std::system_error, also when there is no such program.
     */
    CChildProcess(const std::string& inProgram, const std::vector<std::string>& inArguments);
    CChildProcess(const CChildProcess&) = delete;
    CChildProcess& operator=(const CChildProcess&) = delete;
    ~CChildProcess();

    /** @return what there is to read, some bytes; nothing when the report has ended or the time is over. */
    std::optional<std::string> Read(Clock::time_point inDeadline);
    /** @return the next whole line; nothing when the report has ended or the time is over. */
    std::optional<std::string> ReadLine(Clock::time_point inDeadline);
    /** @return Signal, Exit or Limit. */
    SChildEnd Wait(Clock::time_point inDeadline);

private:
    CChildProcess() = default;
    void Start(const std::function<void(int)>& inBody);

    pid_t mProcess = -1;
    int mReport = -1;
    std::string mUnread;
};

/** Lets the standard files of this process lead nowhere. */
void SilenceStandardFiles();

/** "Segmentation fault, SIGSEGV". */
std::string NameOfSignal(int inSignal);
