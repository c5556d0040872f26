#include "Tools/aaxhost/CommandProcess.h"
#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/Commands.h"
#include "Tools/aaxhost/check/SCheck.h"
#include "Tools/commandline/CommandLine.h"
#include "Tools/commandline/Documents.h"
#include "Tools/commandline/StandardStreams.h"
#include "Tools/support/Interrupts.h"
#include "Tools/support/Watcher.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <fmt/format.h>

namespace
{
struct SCommand
{
    CommandAction mAction; // empty: the help or the version was asked for
    bool mInOwnProcess = true;
};

/** What stands for CHECK on a command line: groups, and the checks of each. */
std::vector<std::string> GroupsAndChecks()
{
    std::vector<std::string> names;
    std::string_view group;
    for (const SCheck& check : AllChecks())
    {
        if (check.Group() != group)
            names.emplace_back(check.Group());
        group = check.Group();
        names.emplace_back(check.mName);
    }
    return names;
}

/** @return kExitSuccess with the chosen command. */
int ReadCommandLine(int argc, char** argv, SCommand& outCommand)
{
    CLI::App app("Loads AAX modules without a screen or a sound card", "aaxhost");
    bool inProcess = false;
    app.add_flag(
           "--in-process", inProcess,
           "For a debugger: load the module into this process, which then ends where the plug-in crashes")
        ->envname("AAXHOST_IN_PROCESS");
    app.require_subcommand(1);
    AddCommandBench(app, outCommand.mAction);
    AddCommandCheck(app, outCommand.mAction);
    AddCommandDescribe(app, outCommand.mAction);
    AddCommandEditor(app, outCommand.mAction);
    AddCommandRender(app, outCommand.mAction);
    AddCommandState(app, outCommand.mAction);
    AddCommandSurvey(app, outCommand.mAction);
    AddVersionFlag(app, "aaxhost");
    AddExitCodes(app, "0 where it was done, 1 where it was not, 2 for wrong usage.");
    AddDocumentsOption(app, ProgramVersion("aaxhost"), {{"CHECK", GroupsAndChecks()}});
    try
    {
        app.parse(argc, argv);
        // The checks have a process each.
        outCommand.mInOwnProcess =
            !inProcess && !app.got_subcommand("check") && !app.got_subcommand("survey");
        return kExitSuccess;
    }
    catch (const CLI::ParseError& error)
    {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
            return app.exit(error); // prints the help or the version
        return FailUsage(UsageSentence(app, error));
    }
}

int RunCaught(const CommandAction& inAction) noexcept
try
{
    return inAction();
}
catch (const std::exception& error)
{
    if (IsOutputIncomplete())
        return kExitFailure; // this is what was thrown about, and it is said at the end
    return Fail({fmt::format("An exception came out of the module or the host: {}.", error.what())});
}
catch (...)
{
    return Fail({"An exception came out of the module."});
}

int RunCommandLine(int argc, char** argv)
{
    SCommand command;
    const int usage = ReadCommandLine(argc, argv, command);
    if (usage != kExitSuccess || !command.mAction)
        return usage;
    EndCleanlyOnInterrupts();
    const auto work = [&] { return RunCaught(command.mAction); };
    const int result = RunCaught([&] { return command.mInOwnProcess ? RunInOwnProcess(work) : work(); });
    EndWatcher();
    return result;
}
} // namespace

int main(int argc, char** argv)
{
    HoldStandardStreams();
    return FinishOutput(RunCommandLine(argc, argv));
}
