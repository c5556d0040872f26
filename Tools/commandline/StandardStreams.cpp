#include "Tools/commandline/StandardStreams.h"

#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <poll.h>
#include <unistd.h>

void HoldStandardStreams()
{
    // A new file gets the lowest number that is free. Nothing can be written to one that is open for reading.
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(number, F_GETFD) == -1)
            (void)open("/dev/null", number == STDERR_FILENO ? O_WRONLY : O_RDONLY);
}

bool IsOutputUnread()
{
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    return poll(&output, 1, 0) == 1 && (output.revents & POLLERR) != 0;
}

bool IsOutputIncomplete()
{
    std::cout.flush();
    return std::fflush(stdout) != 0 || std::ferror(stdout) != 0;
}

int FinishOutput(int inExitCode)
{
    if (!IsOutputIncomplete())
        return inExitCode;
    std::fputs("Not all of the output could be written: standard output is closed or full.\n", stderr);
    return inExitCode == 0 ? 1 : inExitCode;
}
