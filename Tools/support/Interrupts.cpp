#include "Tools/support/Interrupts.h"

#include "Tools/support/Watcher.h"

#include <csignal>
#include <string_view>

#include <unistd.h>

namespace
{
pid_t gProcess = 0; // written before there is a handler, read by the handler

void Say(std::string_view inText) { (void)!write(STDERR_FILENO, inText.data(), inText.size()); }

/** Calls only what may be called in a signal handler. */
void EndOnInterrupt(int inSignal)
{
    if (getpid() == gProcess)
    {
        Say("\nEnded by ");
        Say(inSignal == SIGINT    ? "an interrupt (SIGINT)"
            : inSignal == SIGTERM ? "a request to end (SIGTERM)"
                                  : "a lost terminal (SIGHUP)");
        Say(": a file that was not complete has been left as it was before.\n");
        EndWatcher();
    }
    (void)std::signal(inSignal, SIG_DFL);
    (void)raise(inSignal); // held back until the handler is done
}
} // namespace

void EndCleanlyOnInterrupts()
{
    gProcess = getpid();
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
    {
        struct sigaction old = {};
        struct sigaction end = {};
        end.sa_handler = &EndOnInterrupt;
        end.sa_flags = SA_RESTART;
        if (sigaction(number, nullptr, &old) == 0 && old.sa_handler != SIG_IGN)
            (void)sigaction(number, &end, nullptr); // can't fail for these
    }
}
