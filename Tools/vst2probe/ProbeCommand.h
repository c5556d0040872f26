#pragma once
#include "Tools/vst2probe/ExpectedProduct.h"

#include <cstdint>
#include <optional>
#include <string>

namespace CLI
{
class App;
}

/** What the command line says of a look at a plug-in. */
struct SProbeArguments
{
    std::string plugin;
    std::string productName;
    double timeoutSeconds = 20.0;
    bool json = false;
    bool configureArguments = false;
    bool expect = false; // to be tried with the options of the next
    OptionValues expected;
    std::optional<std::int32_t> childEntryVersion; // in a child process only
};

void AddProbeOptions(CLI::App& ioApp, SProbeArguments& outArguments);

/** @param inProgram this program, to be run again as the child. @return the exit code. */
int RunProbeCommand(const std::string& inProgram, const SProbeArguments& inArguments);
