#pragma once
#include <array>
#include <cstdio>
#include <string>

#include <sys/wait.h>

struct SRun
{
    int mCode = -1;
    std::string mOutput;
};

/** @param inStream 1 standard output, 2 standard error: what is kept of it. */
inline SRun Vst2probe(const std::string& inArguments, int inStream = 1)
{
    const std::string other = inStream == 1 ? " 2>/dev/null" : " 2>&1 >/dev/null";
    FILE* const pipe = popen((std::string(VST2PROBE_FILE) + " " + inArguments + other).c_str(), "r");
    SRun run;
    std::array<char, 4096> bytes{};
    while (const std::size_t count = std::fread(bytes.data(), 1, bytes.size(), pipe))
        run.mOutput.append(bytes.data(), count);
    const int status = pclose(pipe);
    run.mCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

inline std::string Faulty(const char* inFault)
{
    return std::string(FAULTY_PLUGINS) + "/faulty_" + inFault + ".so";
}
