#include "Tools/macho_loader/CrashTrace.h"

#include "Tools/macho_loader/CMachOImage.h"

#include <csignal>
#include <cstdio>

#include <execinfo.h>
#include <unistd.h>

namespace
{
// No care for what a signal handler may do: the process ends anyway, and does nothing but load images.
void PrintStack(int inSignal)
{
    constexpr int kMostFrames = 64;
    void* frames[kMostFrames];
    const int count = backtrace(frames, kMostFrames);
    (void)std::fprintf(stderr, "signal %d:\n", inSignal);
    for (int i = 0; i < count; ++i)
        if (const CMachOImage* const image = CMachOImage::Containing(frames[i]))
            (void)std::fprintf(stderr, "  %s in %s\n", image->NearestSymbol(frames[i]).first.c_str(),
                               image->Path().c_str());
        else
            backtrace_symbols_fd(frames + i, 1, STDERR_FILENO);
    (void)std::signal(inSignal, SIG_DFL);
    (void)std::raise(inSignal);
}
} // namespace

void InstallCrashTrace()
{
    for (const int number : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT})
        (void)std::signal(number, PrintStack); // these five can always be caught
}
