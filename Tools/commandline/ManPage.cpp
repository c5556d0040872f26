#include "Tools/commandline/ManPage.h"

#include "Tools/commandline/CommandFacts.h"

#include <algorithm>
#include <cctype>
#include <fmt/format.h>
#include <sstream>
#include <string_view>

namespace
{
/** A text as it is to be read; what the page's language would take for its own is written otherwise. */
std::string Roff(std::string_view inText)
{
    std::string text;
    for (std::size_t i = 0; i < inText.size(); ++i)
    {
        const char sign = inText[i];
        const auto byte = static_cast<unsigned char>(sign);
        switch (sign)
        {
        case '\\': text += "\\e"; continue;
        case '-': text += "\\-"; continue;
        case '\'': text += "\\(aq"; continue;
        case '`': text += "\\(ga"; continue;
        case '^': text += "\\(ha"; continue;
        case '~': text += "\\(ti"; continue;
        case '"': text += "\\(dq"; continue;
        case '\n': text += "\n"; continue;
        default: break;
        }
        if (byte < 0x80)
        {
            text += (sign == '.' && (i == 0 || inText[i - 1] == '\n')) ? "\\&." : std::string(1, sign);
            continue;
        }
        // UTF-8: the first byte tells how many follow.
        const int more = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : 1;
        unsigned code = byte & (0x3FU >> more);
        for (int k = 0; k < more && i + 1 < inText.size(); ++k)
            code = (code << 6) | (static_cast<unsigned char>(inText[++i]) & 0x3FU);
        text += fmt::format("\\[u{:04X}]", code);
    }
    return text;
}

std::string Bold(const std::string& inText) { return "\\fB" + Roff(inText) + "\\fR"; }
std::string Italic(const std::string& inText) { return "\\fI" + Roff(inText) + "\\fR"; }

/** Running text: a sentence begins a line, and no line of the page is long. */
std::string Prose(const std::string& inText)
{
    constexpr std::size_t kLongestLine = 78;
    std::string text;
    std::string line;
    std::istringstream words(inText);
    for (std::string word; words >> word;)
    {
        const std::string next = Roff(word);
        const bool endsSentence = line.ends_with('.') || line.ends_with("\\&.");
        if (!line.empty() && (endsSentence || line.size() + 1 + next.size() > kLongestLine))
        {
            text += line + "\n";
            line.clear();
        }
        line += (line.empty() ? "" : " ") + next;
    }
    return line.empty() ? text : text + line + "\n";
}

std::string AsSentence(const std::string& inText)
{
    return inText.empty() || inText.back() == '.' ? inText : inText + ".";
}

/** A heading, and paragraphs; nothing without any. */
std::string Section(const char* inHeading, const std::string& inText)
{
    return inText.empty() ? inText
                          : fmt::format(".SH {}\n{}{}", inHeading, inText, inText.back() == '\n' ? "" : "\n");
}

/** "FILE", "[MODULE]...": an argument as the synopsis has it. */
std::string InSynopsis(const SOptionFacts& inArgument)
{
    const std::string name = Italic(inArgument.mForm) + (inArgument.mIsRepeated ? "..." : "");
    return inArgument.mIsRequired ? name : "[" + name + "]";
}

/** "aaxhost state MODULE save": the command and the arguments that come ahead of it. */
std::string Invocation(const SCommandFacts& inCommand, const std::string& inAbove)
{
    return inAbove.empty() ? Bold(JoinWords(inCommand.mPath)) : inAbove + " " + Bold(inCommand.Name());
}

std::string WithArguments(std::string inInvocation, const SCommandFacts& inCommand)
{
    for (const SOptionFacts& argument : inCommand.mArguments)
        inInvocation += " " + InSynopsis(argument);
    return inInvocation;
}

std::string Synopsis(const SCommandFacts& inCommand, const std::string& inAbove)
{
    std::string text = Invocation(inCommand, inAbove);
    for (const SOptionFacts& option : inCommand.mOptions)
        if (option.mIsRequired)
            text += fmt::format(" {} {}", Bold(option.mNames.back()), Italic(option.mForm));
    text = WithArguments(text + " [" + Italic("OPTION") + "]...", inCommand);
    if (!inCommand.mCommands.empty())
        text += inCommand.mNeedsCommand ? " " + Italic("COMMAND") : " [" + Italic("COMMAND") + "]";
    return text + (inCommand.mCommands.empty() ? "\n" : " ...\n");
}

/** The description, and in sentences what else the definition says. */
std::string Sayings(const SOptionFacts& inOption)
{
    std::string text = Prose(AsSentence(inOption.mDescription));
    for (const std::string& range : inOption.mRange)
        text += Prose("Takes " + range + ".");
    if (!inOption.mDefault.empty())
        text += "The default is " + Roff(inOption.mDefault) + ".\n";
    if (!inOption.mEnvironment.empty())
        text += "The environment variable " + Bold(inOption.mEnvironment) + " stands for it.\n";
    for (const std::string& other : inOption.mNeeds)
        text += "Goes only with " + Bold(other) + ".\n";
    for (const std::string& other : inOption.mExcludes)
        text += "Does not go with " + Bold(other) + ".\n";
    if (inOption.mIsRepeated)
        text += "May be given several times.\n";
    if (inOption.mIsRequired)
        text += "Has to be given.\n";
    return text;
}

using OptionNameLists = std::vector<std::vector<std::string>>;

/** @param inBut what is said of options of these names elsewhere. */
std::string Entries(const std::vector<SOptionFacts>& inOptions, const OptionNameLists& inBut = {})
{
    std::string text;
    for (const SOptionFacts& option : inOptions)
    {
        if (std::ranges::find(inBut, option.mNames) != inBut.end())
            continue;
        std::string names;
        for (const std::string& name : option.mNames)
            names += (names.empty() ? "" : ", ") + Bold(name);
        if (!option.mForm.empty())
            names += (names.empty() ? "" : " ") + Italic(option.mForm);
        if (option.mMayHaveValue)
            names += "[=" + Italic("VALUE") + "]";
        text += ".TP\n" + names + "\n" + Sayings(option);
    }
    return text;
}

std::string Reference(const std::string& inPage) { return fmt::format(".BR {} (1)", Roff(inPage)); }

/** The commands with their descriptions, and where to read on. */
std::string CommandPages(const SCommandFacts& inProgram)
{
    std::string text;
    for (const SCommandFacts& command : inProgram.mCommands)
        text += ".TP\n" + Bold(command.Name()) + "\n" + Prose(AsSentence(command.mDescription)) + "See\n" +
                Reference(ManPageName(command)) + ".\n";
    return text;
}

/** The commands with all about them, but for the options that the command above has as well. */
std::string CommandsInFull(const SCommandFacts& inCommand, const std::string& inInvocation)
{
    OptionNameLists known;
    for (const SOptionFacts& option : inCommand.mOptions)
        known.push_back(option.mNames);
    std::string text;
    for (const SCommandFacts& command : inCommand.mCommands)
        text += ".SS " + Roff(command.Name()) + "\n" + Synopsis(command, inInvocation) + ".PP\n" +
                Prose(AsSentence(command.mDescription)) + Entries(command.mArguments) +
                Entries(command.mOptions, known) +
                CommandsInFull(command, WithArguments(Invocation(command, inInvocation), command));
    return text;
}

/** Which variables stand for which options, of the command and of those above it. */
std::string Environment(const SCommandFacts& inCommand, const SCommandFacts& inProgram)
{
    std::string text;
    const auto add = [&](const SCommandFacts& command)
    {
        for (const SOptionFacts& option : command.mOptions)
            if (!option.mEnvironment.empty())
                text += fmt::format(".TP\n{}\nStands for {} of {} where that is not given.\n",
                                    Bold(option.mEnvironment), Bold(option.mNames.back()),
                                    Bold(JoinWords(command.mPath)));
    };
    if (&inCommand != &inProgram)
        add(inProgram);
    for (const SCommandFacts* const command : WithCommandsBelow(inCommand))
        add(*command);
    return text;
}

std::string SeeAlso(const SCommandFacts& inCommand, const SCommandFacts& inProgram)
{
    std::vector<std::string> pages;
    if (&inCommand != &inProgram)
        pages.push_back(ManPageName(inProgram));
    for (const SCommandFacts& command : inProgram.mCommands)
        if (&command != &inCommand)
            pages.push_back(ManPageName(command));
    std::string text;
    for (const std::string& page : pages)
        text += Reference(page) + (&page == &pages.back() ? "\n" : ",\n");
    return text;
}

std::string WithSmallInitial(std::string inText)
{
    if (inText.size() > 1 && std::islower(static_cast<unsigned char>(inText[1])) != 0)
        inText[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(inText[0])));
    return inText;
}
} // namespace

std::string ManPageName(const SCommandFacts& inCommand) { return JoinWords(inCommand.mPath, "-"); }

std::string ManPage(const SCommandFacts& inCommand, const SCommandFacts& inProgram,
                    const std::string& inVersion)
{
    const std::string name = ManPageName(inCommand);
    std::string title = name;
    for (char& letter : title)
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    std::string summary = WithSmallInitial(inCommand.mDescription);
    if (!summary.empty() && summary.back() == '.')
        summary.pop_back();
    // No date: a page is the same from the same sources.
    std::string text = fmt::format(".TH {} 1 \"\" \"{}\" \"User Commands\"\n", Roff(title), inVersion);
    text += ".nh\n.ad l\n"; // names of options stay whole
    text += Section("NAME", Roff(name) + " \\-\n" + Prose(summary));
    text += Section("SYNOPSIS", Synopsis(inCommand, {}));
    text += Section("DESCRIPTION", Prose(AsSentence(inCommand.mDescription)) +
                                       (inCommand.mNotes.empty() ? "" : ".PP\n" + Prose(inCommand.mNotes)));
    text += Section("ARGUMENTS", Entries(inCommand.mArguments));
    text += Section("OPTIONS", Entries(inCommand.mOptions));
    text += Section("COMMANDS",
                    &inCommand == &inProgram
                        ? CommandPages(inProgram)
                        : CommandsInFull(inCommand, WithArguments(Invocation(inCommand, {}), inCommand)));
    text += Section("ENVIRONMENT", Environment(inCommand, inProgram));
    text += Section("EXIT STATUS", Prose(inCommand.mExitCodes));
    return text + Section("SEE ALSO", SeeAlso(inCommand, inProgram));
}
