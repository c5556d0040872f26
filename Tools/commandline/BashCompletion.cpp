#include "Tools/commandline/Completion.h"

#include <fmt/format.h>

namespace
{
// The work is the same for every program; what it knows of one stands in the two functions that come before.
constexpr char kBashWork[] = R"bash(
# Bash hands over a word in pieces, cut at "=", ":" and "@"; what is proposed replaces the last piece only, but from
# "@" on the whole word.
_PROGRAM()
{
    local path=PROGRAM word='' waiting='' match='' piece='' before='' kind='' choices='' commands='' options=''
    local line=${COMP_LINE-${COMP_WORDS[*]}}
    local -a words=()
    local -i i given=0 most=0 endless=0 cut=0
    for ((i = 0; i <= COMP_CWORD; ++i)); do
        piece=${COMP_WORDS[i]}
        if ((i > 0)) && [[ $line == [![:blank:]]* ]]; then
            words[${#words[*]} - 1]+=$piece
        else
            words+=("$piece")
        fi
        line=${line#"${line%%[![:blank:]]*}"}
        line=${line#"$piece"}
    done
    for ((i = 1; i < ${#words[*]} - 1; ++i)); do
        word=${words[i]}
        _PROGRAM_command "$path"
        if [[ -n $waiting ]]; then
            waiting=''
        elif [[ $word == -* ]]; then
            _PROGRAM_value "$path" "$word"
            [[ $kind == flag ]] || waiting=$word
        elif [[ " $commands " == *" $word "* ]]; then
            path+=" $word"
            given=0
        else
            given+=1
        fi
    done
    _PROGRAM_command "$path"

    match=${words[${#words[*]} - 1]}
    if [[ -z $waiting && $match == --*=* ]]; then
        waiting=${match%%=*}
        match=${match#*=}
    fi
    if [[ -n $waiting ]]; then
        _PROGRAM_value "$path" "$waiting"
        [[ $kind != files ]] || match=${match##*=} # NAME=FILE
    elif [[ $match == -* ]]; then
        kind=choices choices=$options
    elif ((given < most || endless)); then
        _PROGRAM_value "$path" $((given < most ? given : most - 1))
    else
        kind=choices choices=$commands
    fi
    [[ $piece != [=:] ]] || piece=''
    cut=$((${#match} - ${#piece}))
    if [[ $kind == list && $match == @* ]]; then
        kind=listed-in match=${match#@} before=@ cut=0
    fi

    COMPREPLY=()
    while IFS= read -r word; do
        COMPREPLY+=("$before${word:cut > 0 ? cut : 0}")
    done < <(
        case $kind in
        files | listed-in) compgen -f -- "$match" ;;
        folders) compgen -d -- "$match" ;;
        *) compgen -W "$choices" -- "$match" ;;
        esac
        [[ $kind != command-or-file ]] || compgen -f -- "$match"
    )
    case $kind in
    *file* | folders) compopt -o filenames 2>/dev/null || true ;;
    esac
    [[ ${COMPREPLY[*]-} != *= ]] || compopt -o nospace 2>/dev/null || true
}
complete -F _PROGRAM PROGRAM
)bash";

const char* BashKind(EOffer inOffer)
{
    switch (inOffer)
    {
    case EOffer::Files: return "files";
    case EOffer::Folders: return "folders";
    case EOffer::Choices: return "choices";
    case EOffer::NameList: return "list";
    case EOffer::Nothing: break;
    }
    return "nothing";
}

/** What is set where the value of that option or argument is asked for. */
std::string BashValue(const std::string& inPatterns, const SOptionFacts& inOption, bool inMayBeCommand,
                      const NameLists& inLists)
{
    std::string choices = JoinWords(inOption.mChoices);
    if (inOption.mOffer == EOffer::NameList)
        choices = JoinWords(inLists.at(inOption.mForm));
    const bool isFlag = inOption.mForm.empty();
    const std::string kind = isFlag           ? "flag"
                             : inMayBeCommand ? "command-or-file choices=$commands"
                                              : BashKind(inOption.mOffer);
    return fmt::format("    {}) kind={}{} ;;\n", inPatterns, kind,
                       choices.empty() ? choices : fmt::format(" choices='{}'", choices));
}

struct SBashTables
{
    std::string mCommands;
    std::string mValues;
};

void AddToBashTables(const SCommandFacts& inCommand, const NameLists& inLists, SBashTables& ioTables)
{
    const std::string path = JoinWords(inCommand.mPath);
    std::vector<std::string> commands;
    for (const SCommandFacts& command : inCommand.mCommands)
        commands.push_back(command.Name());
    std::vector<std::string> options;
    for (const auto* list : {&inCommand.mOptions, &inCommand.mMoreOptions})
        for (const SOptionFacts& option : *list)
        {
            std::vector<std::string> patterns;
            for (const std::string& name : option.mNames)
            {
                options.push_back(name + (option.mMayHaveValue ? "=" : ""));
                patterns.push_back(fmt::format("'{} {}'", path, name));
            }
            ioTables.mValues += BashValue(JoinWords(patterns, " | "), option, false, inLists);
        }
    const auto& arguments = inCommand.mArguments;
    for (std::size_t i = 0; i < arguments.size(); ++i)
        ioTables.mValues += BashValue(fmt::format("'{} {}'", path, i), arguments[i],
                                      !commands.empty() && !inCommand.mNeedsCommand, inLists);
    ioTables.mCommands +=
        fmt::format("    '{}')\n        commands='{}'\n        options='{}'\n        most={} endless={}\n"
                    "        ;;\n",
                    path, JoinWords(commands), JoinWords(options), arguments.size(),
                    !arguments.empty() && arguments.back().mIsRepeated ? 1 : 0);
    for (const SCommandFacts& command : inCommand.mCommands)
        AddToBashTables(command, inLists, ioTables);
}
} // namespace

std::string BashCompletion(const SCommandFacts& inProgram, const NameLists& inLists)
{
    SBashTables tables;
    AddToBashTables(inProgram, inLists, tables);
    const std::string& name = inProgram.Name();
    std::string work = kBashWork;
    constexpr std::string_view placeholder = "PROGRAM";
    for (std::size_t at = 0; (at = work.find(placeholder, at)) != std::string::npos; at += name.size())
        work.replace(at, placeholder.size(), name);
    return fmt::format("# bash completion for {0}\n\n"
                       "# What may follow the command $1.\n_{0}_command()\n{{\n"
                       "    commands='' options='' most=0 endless=0\n    case $1 in\n{1}    esac\n}}\n\n"
                       "# What is offered for the option $2 of the command $1, or for its argument of that "
                       "number.\n_{0}_value()\n{{\n    kind=flag choices=''\n    case \"$1 $2\" in\n{2}    "
                       "esac\n}}\n{3}",
                       name, tables.mCommands, tables.mValues, work);
}
