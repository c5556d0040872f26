#include "Tools/vst2probe/ProgramFileCommand.h"

#include "Tools/vst2probe/ProgramFile.h"

#include <cstdio>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

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
            action->add_option("PLUGIN", outArguments.plugin, "A VST 2 plug-in: a file or a bundle folder")
                ->required();
            action->add_option("FILE", outArguments.file, isBank ? "Bank file" : "Preset file")->required();
            action->add_option("--timeout", outArguments.timeoutSeconds, "Seconds that it may take")
                ->check(CLI::Range(0.01, 3600.0))
                ->capture_default_str();
            action->add_flag(kProgramFileChildFlag, outArguments.isChild)->group(""); // not in the help
            action->callback(
                [&outArguments, isBank, isLoad]
                {
                    outArguments.isBank = isBank;
                    outArguments.isLoad = isLoad;
                });
        }
    }
}

int RunProgramFileCommand(const std::string& inProgram, const SProgramFileArguments& inArguments)
{
    const SProgramFileJob job{
        std::filesystem::absolute(inArguments.plugin).lexically_normal(), inArguments.file,
        inArguments.isBank, inArguments.isLoad,
        std::chrono::milliseconds(static_cast<std::int64_t>(1000.0 * inArguments.timeoutSeconds))};
    if (inArguments.isChild)
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
