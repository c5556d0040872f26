#include "Tools/commandline/CommandLine.h"

#include "Tools/commandline/NearestNames.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace
{
std::vector<std::string> OptionNames(const CLI::App& inApp)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : inApp.get_options())
        if (!option->get_group().empty()) // else it is not for people
            for (const std::string& name : option->get_lnames())
                names.push_back("--" + name);
    return names;
}

/** What follows "There is no ...": the nearest names, else where to look. */
std::string Proposal(const std::vector<std::string>& inNearest, const std::string& inElse)
{
    return inNearest.empty() ? inElse : fmt::format("did you mean {}?", JoinNames(inNearest));
}
} // namespace

std::string ProgramVersion(const std::string& inProgram) { return inProgram + " " + TOOLS_VERSION; }

void AddVersionFlag(CLI::App& ioApp, const std::string& inProgram)
{
    ioApp.set_version_flag("--version", ProgramVersion(inProgram), "Print the version and exit");
    for (CLI::App* const command : ioApp.get_subcommands(nullptr))
        AddVersionFlag(*command, inProgram);
}

std::vector<std::string> CommandNames(const CLI::App& inApp)
{
    std::vector<std::string> names;
    for (const CLI::App* const command : inApp.get_subcommands(nullptr))
        names.push_back(command->get_name());
    return names;
}

std::string UsageSentence(const CLI::App& inApp, const CLI::ParseError& inError)
{
    const CLI::App* command = &inApp;
    std::vector<std::string> options = OptionNames(inApp);
    std::string path = inApp.get_name();
    while (!command->get_subcommands().empty())
    {
        command = command->get_subcommands().front();
        const std::vector<std::string> more = OptionNames(*command);
        options.insert(options.end(), more.begin(), more.end());
        path += " " + command->get_name();
    }
    const std::vector<std::string> commands = CommandNames(*command);
    for (const std::string& whole : inApp.remaining(true))
    {
        const std::string word = whole.substr(0, whole.find('='));
        const bool isOption = word.size() > 1 && word.front() == '-';
        const std::vector<std::string> near = NearestNames(word, isOption ? options : commands);
        if (isOption)
            return fmt::format("There is no option '{}'; {}", word,
                               Proposal(near, fmt::format("'{} --help' lists what there is.", path)));
        if (!near.empty() || command->get_require_subcommand_min() > 0)
            return fmt::format("There is no command '{}'; {}", word,
                               Proposal(near, fmt::format("there is {}.", JoinNames(commands))));
    }
    return inError.what();
}
