#include "Tools/aaxhost/CommandProcess.h"

#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/commandline/StandardStreams.h"
#include "Tools/support/CChildProcess.h"
#include "Tools/support/CStage.h"
#include "Tools/support/WriteAll.h"

#include <fmt/format.h>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace
{
/** A process in the background of a terminal that reads from it would be stopped. */
void LetGoOfTerminalInput()
{
    if (isatty(STDIN_FILENO) == 0)
        return;
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    (void)dup2(nothing, STDIN_FILENO);
}

std::string HowItEnded(const SChildEnd& inEnd)
{
    const char* const stage = CStage::Current();
    const std::string when = stage != nullptr ? fmt::format(" while {}", stage) : std::string();
    if (inEnd.mKind == SChildEnd::EKind::Exit)
        return fmt::format("The plug-in ended the program (exit {}){}.", inEnd.mNumber, when);
    return fmt::format("The plug-in crashed ({}){}.", NameOfSignal(inEnd.mNumber), when);
}

constexpr int kExitOfSignals = 128;
} // namespace

int RunInOwnProcess(const std::function<int()>& inWork)
{
    constexpr auto kWithoutLimit = CChildProcess::Clock::time_point::max();
    CStage::Share();
    CChildProcess child(
        [&](int inReport)
        {
            LetGoOfTerminalInput();
            const char exit = static_cast<char>(FinishOutput(inWork()));
            (void)WriteAll(inReport, {&exit, 1}); // nobody reads it only where the parent is gone
        });
    // Only the work tells its end in this way: a plug-in that ends the process with code 0 has done nothing.
    if (const auto exit = child.Read(kWithoutLimit))
        return exit->front();
    const SChildEnd end = child.Wait(kWithoutLimit);
    if (end.mKind == SChildEnd::EKind::Signal && end.mNumber == SIGPIPE && IsOutputUnread())
        return kExitOfSignals + SIGPIPE; // as a shell counts; nothing crashed
    return Fail({HowItEnded(end)});
}
