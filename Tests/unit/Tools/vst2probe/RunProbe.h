#pragma once
#include "Tests/unit/ShellRun.h"

/** @param inStream 1 standard output, 2 standard error: what is kept of it. */
inline SShellRun Vst2probe(const std::string& inArguments, int inStream = 1)
{
    const std::string other = inStream == 1 ? " 2>/dev/null" : " 2>&1 >/dev/null";
    return RunShell(std::string(VST2PROBE_FILE) + " " + inArguments + other);
}

inline std::string Faulty(const char* inFault)
{
    return std::string(FAULTY_PLUGINS) + "/faulty_" + inFault + ".so";
}
