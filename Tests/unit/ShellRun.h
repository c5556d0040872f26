#pragma once
#include <array>
#include <cstdio>
#include <string>

#include <sys/wait.h>

struct SShellRun
{
    int mCode = -1; // -1 where a signal ended it
    std::string mOutput;
};

/** Has a shell run a command line, and keeps its standard output. */
inline SShellRun RunShell(const std::string& inCommand)
{
    FILE* const pipe = popen(inCommand.c_str(), "r");
    SShellRun run;
    std::array<char, 4096> bytes{};
    while (const std::size_t count = std::fread(bytes.data(), 1, bytes.size(), pipe))
        run.mOutput.append(bytes.data(), count);
    const int status = pclose(pipe);
    run.mCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}
