#pragma once
#include "Tests/doubles/faulty/FaultyPlugin.h"
#include "Tests/support/ToolRun.h"

inline SToolRun Vst2probe(const std::string& inArguments)
{
    return RunShell(std::string(VST2PROBE_FILE) + " " + inArguments);
}
