#include "Tools/aaxhost/window/CVirtualDisplay.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <X11/Xlib.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
constexpr char kProgram[] = "/usr/bin/Xvfb";
constexpr int kNumberPipe = 3; // where the server writes the number it chose
constexpr int kStartLimitMs = 30000;

/** What the server writes when it is ready; empty when it does not in time. */
std::string ReadNumber(int inPipe)
{
    std::string number;
    for (char letter = 0; letter != '\n'; number += letter)
    {
        pollfd ready{inPipe, POLLIN, 0};
        if (poll(&ready, 1, kStartLimitMs) != 1 || read(inPipe, &letter, 1) != 1)
            return {};
    }
    number.pop_back();
    return number;
}
} // namespace

CVirtualDisplay::~CVirtualDisplay()
{
    if (mServer <= 0)
        return;
    if (mConnection != nullptr)
        (void)XCloseDisplay(static_cast<Display*>(mConnection)); // it is gone either way
    (void)unsetenv("DISPLAY");                                   // cannot fail for a name like this
    (void)kill(mServer, SIGTERM);
    (void)waitpid(mServer, nullptr, 0);
}

bool CVirtualDisplay::IsInstalled() { return access(kProgram, X_OK) == 0; }

std::string CVirtualDisplay::Start()
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return std::strerror(errno);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&files, ends[1], kNumberPipe);
    const std::string pipe = std::to_string(kNumberPipe);
    // Told to end with its last client, it also ends where this process dies before it can end it.
    const char* const arguments[] = {kProgram,       "-displayfd", pipe.c_str(), "-screen",    "0",
                                     "1600x1200x24", "-nolisten",  "tcp",        "-terminate", nullptr};
    const int failed = posix_spawn(&mServer, kProgram, &files, nullptr,
                                   const_cast<char* const*>(arguments), // the interface's type; not written
                                   environ);
    posix_spawn_file_actions_destroy(&files);
    close(ends[1]);
    const std::string number = failed == 0 ? ReadNumber(ends[0]) : std::string();
    close(ends[0]);
    if (failed != 0)
        mServer = 0;
    if (number.empty())
        return failed != 0 ? std::strerror(failed) : "Xvfb does not start";
    (void)setenv("DISPLAY", (":" + number).c_str(), 1); // cannot fail for a name like this
    mConnection = XOpenDisplay(nullptr);
    return mConnection != nullptr ? "" : "Xvfb takes no connection";
}
