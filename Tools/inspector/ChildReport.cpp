#include "Tools/inspector/ChildReport.h"

#include "Tools/support/WriteAll.h"

#include <cstdlib>

#include <csignal>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <unistd.h>

namespace
{
/** Takes the standard output for itself; what the plug-in writes goes nowhere. @return the descriptor. */
int TakeOutput()
{
    const int output = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 10);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    (void)dup2(nowhere, STDOUT_FILENO); // without it the plug-in's output is lines that mean nothing
    return output;
}

/** A crash has to look like one to the parent, and to leave no file behind. */
void LetCrashesShow()
{
    for (const int number : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT})
        (void)std::signal(number, SIG_DFL); // sanitizers have put in handlers that end with an exit
    const rlimit none{0, 0};
    (void)setrlimit(RLIMIT_CORE, &none); // then there may be a core file
}

/** Ends a child that hangs even if its parent is gone; the parent is first otherwise. */
void EndBehind(std::chrono::milliseconds inLimit)
{
    (void)alarm(static_cast<unsigned>(std::chrono::ceil<std::chrono::seconds>(inLimit).count()) + 5);
}
} // namespace

CChildReport::CChildReport(std::chrono::milliseconds inLimit) : mOutput(TakeOutput())
{
    LetCrashesShow();
    EndBehind(inLimit);
}

CChildReport::CChildReport(int inOutput, std::chrono::milliseconds inLimit) : mOutput(inOutput)
{
    SilenceStandardFiles();
    LetCrashesShow();
    EndBehind(inLimit);
}

void CChildReport::Send(const nlohmann::ordered_json& inMessage) const
{
    // Plug-ins' texts are in any encoding.
    const std::string line =
        inMessage.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
    if (!WriteAll(mOutput, line))
        _exit(EXIT_FAILURE); // nobody listens
}

std::string HowChildEnded(const SChildEnd& inEnd, const std::string& inStage,
                          std::chrono::milliseconds inLimit)
{
    if (inEnd.mKind == SChildEnd::EKind::Limit)
    {
        return fmt::format("it did not come back within {:g} seconds while {}",
                           static_cast<double>(inLimit.count()) / 1000.0, inStage);
    }
    if (inEnd.mKind == SChildEnd::EKind::Signal)
        return fmt::format("it crashed ({}) while {}", NameOfSignal(inEnd.mNumber), inStage);
    return fmt::format("it ended its process (status {}) while {}", inEnd.mNumber, inStage);
}
