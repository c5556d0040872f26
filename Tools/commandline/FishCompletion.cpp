#include "Tools/commandline/Completion.h"

#include <fmt/format.h>

namespace
{
/** Between single quotes. */
std::string FishText(const std::string& inText)
{
    std::string text;
    for (const char sign : inText)
        text += sign == '\'' || sign == '\\' ? std::string("\\") + sign : std::string(1, sign);
    return text;
}

std::string FishValue(const SOptionFacts& inOption, const NameLists& inLists)
{
    switch (inOption.mOffer)
    {
    case EOffer::Files: return " -r -F";
    case EOffer::Folders: return " -x -a '(__fish_complete_directories)'";
    case EOffer::Choices: return fmt::format(" -x -a '{}'", JoinWords(inOption.mChoices));
    case EOffer::NameList: return fmt::format(" -x -a '{}'", JoinWords(inLists.at(inOption.mForm)));
    case EOffer::Nothing: break;
    }
    return inOption.mForm.empty() ? "" : " -x";
}

/** True where the line is at that command and at none below it. */
std::string FishCondition(const SCommandFacts& inCommand)
{
    std::string text;
    for (std::size_t i = 1; i < inCommand.mPath.size(); ++i)
        text += (text.empty() ? "" : "; and ") + ("__fish_seen_subcommand_from " + inCommand.mPath[i]);
    std::vector<std::string> below;
    for (const SCommandFacts& command : inCommand.mCommands)
        below.push_back(command.Name());
    if (!below.empty())
        text += (text.empty() ? "" : "; and ") + ("not __fish_seen_subcommand_from " + JoinWords(below));
    return text.empty() ? text : fmt::format(" -n '{}'", text);
}
} // namespace

std::string FishCompletion(const SCommandFacts& inProgram, const NameLists& inLists)
{
    const std::string& name = inProgram.Name();
    std::string text = fmt::format("# fish completion for {}\n", name);
    for (const SCommandFacts* const command : WithCommandsBelow(inProgram))
    {
        const std::string start = fmt::format("complete -c {}{}", name, FishCondition(*command));
        for (const SCommandFacts& below : command->mCommands)
            text += fmt::format("{} -a {} -d '{}'\n", start, below.Name(), FishText(below.mDescription));
        if (command->mArguments.empty())
            text += start + " -f\n"; // no files
        for (const auto* list : {&command->mOptions, &command->mMoreOptions})
            for (const SOptionFacts& option : *list)
            {
                text += start;
                for (const std::string& word : option.mNames)
                    text += word.starts_with("--") ? " -l " + word.substr(2) : " -s " + word.substr(1);
                text += FishValue(option, inLists) + fmt::format(" -d '{}'\n", FishText(option.mDescription));
            }
    }
    return text;
}
