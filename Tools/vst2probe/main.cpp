#include "Tools/commandline/CommandLine.h"
#include "Tools/commandline/Documents.h"
#include "Tools/commandline/NearestNames.h"
#include "Tools/commandline/StandardStreams.h"
#include "Tools/inspector/ProbePlugin.h"
#include "Tools/support/Interrupts.h"
#include "Tools/vst2probe/ProductChoice.h"
#include "Tools/vst2probe/ProgramFile.h"
#include "Tools/vst2probe/Report.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace
{
/** What the command line says of a look at a plug-in. */
struct SProbeArguments
{
    std::string mPlugin;
    std::string mProductName;
    double mTimeoutSeconds = 20.0;
    bool mJson = false;
    bool mConfigureArguments = false;
    bool mExpect = false; // to be tried with the options of the next
    OptionValues mExpected;
    std::vector<std::string> mExpectedFeatures;
    std::optional<std::int32_t> mChildEntryVersion; // in a child process only
};

/** A bundle may be given with a slash at its end. */
std::filesystem::path AbsolutePath(const std::string& inPath)
{
    const std::filesystem::path path = std::filesystem::absolute(inPath).lexically_normal();
    return path.has_filename() ? path : path.parent_path();
}

/** The error as a sentence and, where a program reads the output, there as well. @return the exit code. */
int Refuse(const SProbeArguments& inArguments, const std::string& inSentence)
{
    if (inArguments.mJson)
    {
        // Paths are in any encoding.
        fmt::print("{}\n", nlohmann::ordered_json{{"error", inSentence}}.dump(
                               4, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
    }
    fmt::print(stderr, "{}\n", inSentence);
    return 1;
}

/** @return why there is nothing to look at, as a sentence; empty when there is. */
std::string PathFault(const std::filesystem::path& inPlugin)
{
    std::error_code error;
    if (!std::filesystem::exists(inPlugin, error) && !error)
    {
        return std::filesystem::is_symlink(inPlugin, error)
                   ? fmt::format("{} is a link to {}, where there is nothing.", inPlugin.string(),
                                 std::filesystem::read_symlink(inPlugin, error).string())
                   : fmt::format("There is no plug-in at {}.", inPlugin.string());
    }
    if (error || access(inPlugin.c_str(), R_OK) != 0)
    {
        return fmt::format("{} cannot be read: {}.", inPlugin.string(),
                           error ? error.message() : std::strerror(errno));
    }
    return {};
}

int Expect(const std::string& inProgram, const std::filesystem::path& inPlugin,
           const SProbeArguments& inArguments, std::chrono::milliseconds inLimit)
{
    const SExpectation expectation =
        TryProduct(inProgram, inPlugin, inArguments.mExpected,
                   std::ranges::count(inArguments.mExpectedFeatures, "LATENCY") > 0, inLimit);
    if (!expectation.mRefusal.empty())
    {
        return Refuse(inArguments, fmt::format("{} cannot be wrapped with these options: {}.",
                                               inPlugin.string(), expectation.mRefusal));
    }
    for (const std::string& warning : expectation.mWarnings)
        fmt::print(stderr, "Warning of {}: {}\n", inPlugin.string(), warning);
    if (inArguments.mJson)
        fmt::print("{}\n", nlohmann::ordered_json{{"warnings", expectation.mWarnings}}.dump(4));
    else
        fmt::print("{} loads with these options.\n", inPlugin.string());
    return 0;
}

int Look(const std::string& inProgram, const std::filesystem::path& inPlugin,
         const SProbeArguments& inArguments, std::chrono::milliseconds inLimit)
{
    const SProbeResult result = ProbePlugin(inProgram, inPlugin, inLimit);
    if (!result.mFacts)
    {
        return Refuse(inArguments,
                      fmt::format("{} cannot be wrapped: {}.", inPlugin.string(), result.mRefusal));
    }
    const SProductChoice choice = ChooseProduct(inPlugin, result, inArguments.mProductName);
    if (inArguments.mConfigureArguments)
    {
        for (const std::string& argument : choice.ConfigureArguments())
            fmt::print("{}\n", argument);
    }
    else
    {
        fmt::print("{}", inArguments.mJson ? JsonReport(*result.mFacts, choice)
                                           : TextReport(*result.mFacts, choice));
    }
    return 0;
}

void AddProbeOptions(CLI::App& ioApp, SProbeArguments& outArguments)
{
    ioApp.add_option("PLUGIN", outArguments.mPlugin, "A VST 2 plug-in: a file or a bundle folder");
    ioApp
        .add_option("--name", outArguments.mProductName,
                    "Name of the product (default: made from the plug-in's)")
        ->type_name("NAME")
        ->check(
            [](const std::string& inName) {
                return IsProductName(inName) ? std::string()
                                             : "a product's name has letters, digits, '-' and '_' only";
            });
    ioApp.add_option("--timeout", outArguments.mTimeoutSeconds, "Seconds that each attempt may take")
        ->check(CLI::Range(0.01, 3600.0).description("0.01 to 3600"))
        ->capture_default_str();
    CLI::Option* const json = ioApp.add_flag("--json", outArguments.mJson, "Report as JSON");
    ioApp
        .add_flag("--configure-args", outArguments.mConfigureArguments,
                  "Print the arguments that configure this product on cmake's command line, one a line")
        ->excludes(json);
    CLI::Option* const expect =
        ioApp.add_flag("--expect", outArguments.mExpect,
                       "Only try whether it loads as a product with the options that follow");
    for (const SProbedOption& option : ProbedOptions())
    {
        std::int32_t& value = outArguments.mExpected[option.mKeyword];
        CLI::Option* const added =
            option.mIsSwitch
                ? ioApp.add_flag(option.Flag(), value, fmt::format("The product has {}", option.mKeyword))
                : ioApp.add_option(option.Flag(), value, fmt::format("The product's {}", option.mKeyword));
        added->needs(expect);
    }
    ioApp.add_option("--features", outArguments.mExpectedFeatures, "The product's FEATURES")
        ->type_name("FEATURE,...")
        ->delimiter(',')
        ->needs(expect);
    ioApp.add_option(kProbeChildOption, outArguments.mChildEntryVersion)->group(""); // not in the help
}

int RunProbeCommand(const std::string& inProgram, const SProbeArguments& inArguments)
{
    const std::chrono::milliseconds limit(static_cast<std::int64_t>(1000.0 * inArguments.mTimeoutSeconds));
    const std::filesystem::path plugin = AbsolutePath(inArguments.mPlugin);
    if (inArguments.mChildEntryVersion)
        RunProbeChild(plugin, *inArguments.mChildEntryVersion, limit);
    try
    {
        if (const std::string fault = PathFault(plugin); !fault.empty())
            return Refuse(inArguments, fault);
        return inArguments.mExpect ? Expect(inProgram, plugin, inArguments, limit)
                                   : Look(inProgram, plugin, inArguments, limit);
    }
    catch (const std::exception& error)
    {
        if (IsOutputIncomplete())
            throw; // it is not the plug-in
        return Refuse(inArguments, fmt::format("{} cannot be looked at: {}.", plugin.string(), error.what()));
    }
}

/** What the command line says of a preset or bank file. */
struct SProgramFileArguments
{
    std::string mPlugin; // empty: no such command was given
    std::string mFile;
    double mTimeoutSeconds = 20.0;
    bool mIsBank = false;
    bool mIsLoad = false;
    bool mIsChild = false;
};

void AddProgramFileCommands(CLI::App& ioApp, SProgramFileArguments& outArguments)
{
    for (const bool isBank : {false, true})
    {
        CLI::App* const kind = ioApp.add_subcommand(
            isBank ? "bank" : "preset", isBank ? "Write or read a bank file: all programs"
                                               : "Write or read a preset file: the current program");
        kind->require_subcommand(1);
        for (const bool isLoad : {false, true})
        {
            CLI::App* const action = kind->add_subcommand(
                isLoad ? "load" : "save", isLoad ? "Give the file to a fresh plug-in and print its parameters"
                                                 : "Write the file from a fresh plug-in");
            action->add_option("PLUGIN", outArguments.mPlugin, "A VST 2 plug-in: a file or a bundle folder")
                ->required();
            action->add_option("FILE", outArguments.mFile, isBank ? "Bank file" : "Preset file")->required();
            action->add_option("--timeout", outArguments.mTimeoutSeconds, "Seconds that it may take")
                ->check(CLI::Range(0.01, 3600.0).description("0.01 to 3600"))
                ->capture_default_str();
            action->add_flag(kProgramFileChildFlag, outArguments.mIsChild)->group(""); // not in the help
            action->callback(
                [&outArguments, isBank, isLoad]
                {
                    outArguments.mIsBank = isBank;
                    outArguments.mIsLoad = isLoad;
                });
        }
    }
}

int RunProgramFileCommand(const std::string& inProgram, const SProgramFileArguments& inArguments)
{
    const SProgramFileJob job{
        std::filesystem::absolute(inArguments.mPlugin).lexically_normal(), inArguments.mFile,
        inArguments.mIsBank, inArguments.mIsLoad,
        std::chrono::milliseconds(static_cast<std::int64_t>(1000.0 * inArguments.mTimeoutSeconds))};
    if (inArguments.mIsChild)
        RunProgramFileChild(job);
    const auto text = RunProgramFileJob(inProgram, job);
    if (!text)
    {
        fmt::print(stderr, "{}\n", text.Problem().mSentence);
        return 1;
    }
    fmt::print("{}", *text);
    return 0;
}

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
    CLI::App app("Looks at a VST 2 plug-in from a process of its own and says how to make a product of it",
                 "vst2probe");
    SProbeArguments probe;
    AddProbeOptions(app, probe);
    SProgramFileArguments programFile;
    AddProgramFileCommands(app, programFile);
    AddVersionFlag(app, "vst2probe");
    AddExitCodes(app, "0 done, 1 refused, 2 wrong usage.");
    AddDocumentsOption(app, ProgramVersion("vst2probe"), {});
    std::string fault;
    try
    {
        app.parse(inCount, inArguments);
        if (probe.mPlugin.empty() && programFile.mPlugin.empty())
            throw CLI::RequiredError("PLUGIN");
    }
    catch (const CLI::ParseError& error)
    {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
            return app.exit(error); // prints the help or the version
        fault = UsageSentence(app, error);
    }
    if (const std::string mistyped = FindMistypedCommand(app, probe.mPlugin); !mistyped.empty())
        fault = mistyped;
    if (!fault.empty())
    {
        fmt::print(stderr, "{}\nRun with --help for more information.\n", fault);
        return kWrongUsage;
    }
    EndCleanlyOnInterrupts();
    try
    {
        return programFile.mPlugin.empty() ? RunProbeCommand(inArguments[0], probe)
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
