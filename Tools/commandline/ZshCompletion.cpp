#include "Tools/commandline/Completion.h"

#include <fmt/format.h>
#include <string_view>

namespace
{
/** As a part of an argument of `_arguments`, between single quotes. */
std::string ZshText(const std::string& inText)
{
    std::string text;
    for (const char sign : inText)
        if (sign == '\'')
            text += "'\\''";
        else if (std::string_view("[]:\\").find(sign) != std::string_view::npos)
            text += std::string("\\") + sign;
        else
            text += sign;
    return text;
}

/** The action behind the value's name. */
std::string ZshAction(const SOptionFacts& inOption, const std::string& inProgram)
{
    switch (inOption.mOffer)
    {
    case EOffer::Files:
        return inOption.mForm.find('=') != std::string::npos ? "_" + inProgram + "_assigned_file" : "_files";
    case EOffer::Folders: return "_files -/";
    case EOffer::Choices: return "(" + JoinWords(inOption.mChoices) + ")";
    case EOffer::NameList: return fmt::format("_{}_{}", inProgram, inOption.mForm);
    case EOffer::Nothing: break;
    }
    return " "; // nothing is offered, and the value's name is shown
}

std::string ZshOption(const SOptionFacts& inOption, const std::string& inProgram)
{
    std::string others = JoinWords(inOption.mExcludes);
    if (inOption.mNames.size() > 1)
        others += (others.empty() ? "" : " ") + JoinWords(inOption.mNames);
    std::string text;
    for (const std::string& name : inOption.mNames)
    {
        text += " \\\n        '";
        if (inOption.mIsRepeated)
            text += "*";
        else if (!others.empty())
            text += "(" + others + ")";
        text += name;
        if (inOption.mMayHaveValue)
            text += "=-";
        else if (!inOption.mForm.empty())
            text += name.starts_with("--") ? "=" : "+";
        text += "[" + ZshText(inOption.mDescription) + "]";
        if (inOption.mMayHaveValue)
            text += "::value: ";
        else if (!inOption.mForm.empty())
            text += ":" + ZshText(inOption.mForm) + ":" + ZshAction(inOption, inProgram);
        text += "'";
    }
    return text;
}

std::string ZshFunctionName(const SCommandFacts& inCommand) { return "_" + JoinWords(inCommand.mPath, "_"); }

/** A function for the command, one for each below it. */
std::string ZshFunction(const SCommandFacts& inCommand)
{
    const std::string& program = inCommand.mPath.front();
    std::string specifications;
    for (const auto* list : {&inCommand.mOptions, &inCommand.mMoreOptions})
        for (const SOptionFacts& option : *list)
            specifications += ZshOption(option, program);
    const bool mayBeCommand = !inCommand.mCommands.empty() && !inCommand.mNeedsCommand;
    std::size_t place = 1;
    for (const SOptionFacts& argument : inCommand.mArguments)
        specifications +=
            fmt::format(" \\\n        '{}:{}:{}'",
                        argument.mIsRepeated ? "*" : std::to_string(mayBeCommand ? place : place++),
                        ZshText(argument.mForm), mayBeCommand ? "->command" : ZshAction(argument, program));
    std::string code = ZshFunctionName(inCommand) + "()\n{\n";
    if (inCommand.mCommands.empty())
        return code + "    _arguments -s" + specifications + "\n}\n\n";
    if (!mayBeCommand)
        specifications += fmt::format(" \\\n        '{}:command:->command'", place);
    code += "    local curcontext=$curcontext state line\n    local -A opt_args\n    _arguments -s -C" +
            specifications +
            " \\\n        '*::argument:->argument'\n    case $state in\n    command)\n        local -a "
            "commands=(";
    std::string cases;
    std::string functions;
    for (const SCommandFacts& command : inCommand.mCommands)
    {
        code += fmt::format("\n            '{}:{}'", command.Name(), ZshText(command.mDescription));
        cases += fmt::format("        {}) {} ;;\n", command.Name(), ZshFunctionName(command));
        functions += ZshFunction(command);
    }
    code += "\n        )\n        _describe command commands\n";
    if (mayBeCommand)
        code += "        _files\n";
    return code +
           fmt::format("        ;;\n    argument)\n        case $line[{}] in\n{}        esac\n        ;;\n   "
                       " esac\n}}\n\n",
                       place, cases) +
           functions;
}
} // namespace

std::string ZshCompletion(const SCommandFacts& inProgram, const NameLists& inLists)
{
    const std::string& name = inProgram.Name();
    std::string text = fmt::format(
        "#compdef {0}\n\n_{0}_assigned_file()\n{{\n    compset -P '*='\n    _files\n}}\n\n", name);
    for (const auto& [list, names] : inLists)
        text += fmt::format("_{0}_{1}()\n{{\n    local -a names=({2})\n    if compset -P '@'; then\n        "
                            "_files\n    else\n        _describe {1} names\n    fi\n}}\n\n",
                            name, list, JoinWords(names));
    return text + ZshFunction(inProgram) + fmt::format("_{} \"$@\"\n", name);
}
