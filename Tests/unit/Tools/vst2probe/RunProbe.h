#pragma once
#include "Tests/support/ToolRun.h"

inline SToolRun Vst2probe(const std::string& inArguments)
{
    return RunShell(std::string(VST2PROBE_FILE) + " " + inArguments);
}

inline std::string Faulty(const char* inFault)
{
    return std::string(FAULTY_PLUGINS) + "/faulty_" + inFault + ".so";
}
