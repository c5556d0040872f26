#include "Tools/vst2probe/ProbeCommand.h"
#include "Tools/vst2probe/ProgramFileCommand.h"

#include <cstdio>
#include <exception>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

int main(int inCount, char** inArguments)
{
    constexpr int refused = 1;
    constexpr int wrongUsage = 2;
    CLI::App app("Looks at a VST 2 plug-in from a process of its own and says how to make a product of it.\n"
                 "Exit code: 0 done, 1 refused, 2 wrong usage.");
    SProbeArguments probe;
    AddProbeOptions(app, probe);
    SProgramFileArguments programFile;
    AddProgramFileCommands(app, programFile);
    try
    {
        app.parse(inCount, inArguments);
        if (probe.plugin.empty() && programFile.plugin.empty())
        {
            throw CLI::RequiredError("PLUGIN");
        }
    }
    catch (const CLI::ParseError& error)
    {
        return app.exit(error) == 0 ? 0 : wrongUsage; // help is asked for in this way too
    }
    try
    {
        return programFile.plugin.empty() ? RunProbeCommand(inArguments[0], probe)
                                          : RunProgramFileCommand(inArguments[0], programFile);
    }
    catch (const std::exception& error)
    {
        fmt::print(stderr, "{}\n", error.what());
        return refused;
    }
}
