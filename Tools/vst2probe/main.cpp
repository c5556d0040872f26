#include "Tools/commandline/CommandLine.h"
#include "Tools/commandline/NearestNames.h"
#include "Tools/commandline/StandardStreams.h"
#include "Tools/support/Interrupts.h"
#include "Tools/vst2probe/ProbeCommand.h"
#include "Tools/vst2probe/ProgramFileCommand.h"

#include <cstdio>
#include <exception>
#include <filesystem>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace
{
constexpr int kRefused = 1;
constexpr int kWrongUsage = 2;

/** A mistyped command is read as the name of a plug-in. @return empty where it is one, or like no command. */
std::string FindMistypedCommand(const CLI::App& inApp, const std::string& inPlugin)
{
    const std::vector<std::string> near = NearestNames(inPlugin, CommandNames(inApp));
    if (near.empty() || std::filesystem::exists(inPlugin))
        return {};
    return fmt::format("There is no plug-in and no command '{}'; did you mean {}?", inPlugin,
                       JoinNames(near));
}

int RunCommandLine(int inCount, char** inArguments)
{
    CLI::App app("Looks at a VST 2 plug-in from a process of its own and says how to make a product of it.\n"
                 "Exit code: 0 done, 1 refused, 2 wrong usage.",
                 "vst2probe");
    SProbeArguments probe;
    AddProbeOptions(app, probe);
    SProgramFileArguments programFile;
    AddProgramFileCommands(app, programFile);
    AddVersionFlag(app, "vst2probe");
    std::string fault;
    try
    {
        app.parse(inCount, inArguments);
        if (probe.plugin.empty() && programFile.plugin.empty())
            throw CLI::RequiredError("PLUGIN");
    }
    catch (const CLI::ParseError& error)
    {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
            return app.exit(error); // prints the help or the version
        fault = UsageSentence(app, error);
    }
    if (const std::string mistyped = FindMistypedCommand(app, probe.plugin); !mistyped.empty())
        fault = mistyped;
    if (!fault.empty())
    {
        fmt::print(stderr, "{}\nRun with --help for more information.\n", fault);
        return kWrongUsage;
    }
    EndCleanlyOnInterrupts();
    try
    {
        return programFile.plugin.empty() ? RunProbeCommand(inArguments[0], probe)
                                          : RunProgramFileCommand(inArguments[0], programFile);
    }
    catch (const std::exception& error)
    {
        if (!IsOutputIncomplete()) // else this is what was thrown about, and it is said at the end
            fmt::print(stderr, "{}\n", error.what());
        return kRefused;
    }
}
} // namespace

int main(int inCount, char** inArguments)
{
    HoldStandardStreams();
    return FinishOutput(RunCommandLine(inCount, inArguments));
}
