#include "Tools/aaxhost/CommandBench.h"
#include "Tools/aaxhost/CommandCheck.h"
#include "Tools/aaxhost/CommandDescribe.h"
#include "Tools/aaxhost/CommandEditor.h"
#include "Tools/aaxhost/CommandRender.h"
#include "Tools/aaxhost/CommandState.h"
#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/commandline/CommandLine.h"
#include "Tools/commandline/StandardStreams.h"

#include <exception>
#include <fmt/format.h>

namespace
{
/** @return kExitSuccess with the action of the chosen command; for help and the version without one. */
int ReadCommandLine(int argc, char** argv, CommandAction& outAction)
{
    CLI::App app("Loads AAX modules without a screen or a sound card", "aaxhost");
    app.require_subcommand(1);
    AddCommandBench(app, outAction);
    AddCommandCheck(app, outAction);
    AddCommandDescribe(app, outAction);
    AddCommandEditor(app, outAction);
    AddCommandRender(app, outAction);
    AddCommandState(app, outAction);
    AddVersionFlag(app, "aaxhost");
    try
    {
        app.parse(argc, argv);
        return kExitSuccess;
    }
    catch (const CLI::ParseError& error)
    {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
            return app.exit(error); // prints the help or the version
        return FailUsage(UsageSentence(app, error));
    }
}

int RunCommandLine(int argc, char** argv)
{
    try
    {
        CommandAction action;
        const int usage = ReadCommandLine(argc, argv, action);
        return usage == kExitSuccess && action ? action() : usage;
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
}
} // namespace

int main(int argc, char** argv)
{
    HoldStandardStreams();
    return FinishOutput(RunCommandLine(argc, argv));
}
