#pragma once
#include <map>
#include <string>
#include <vector>

namespace CLI
{
class App;
}

/** The names that a form of values stands for: "CHECK" for those of all checks. */
using NameLists = std::map<std::string, std::vector<std::string>>;

/** What the shell can offer for a value. */
enum class EOffer
{
    Nothing,
    Files,
    Folders,
    Choices, // of the form itself, "at-once|late|last"
    NameList // of the form's name; also @FILE
};

/** An option, or an argument without a name, as the definition of the command line has it. */
struct SOptionFacts
{
    std::vector<std::string> mNames;    // "-h", "--help"; of an argument none
    std::string mForm;                  // "FILE", the argument's name; empty for a flag
    std::vector<std::string> mRange;    // "1 to 10": what the value must be
    std::vector<std::string> mChoices;  // of the form, where that names them
    std::vector<std::string> mNeeds;    // other options' names
    std::vector<std::string> mExcludes; // likewise
    std::string mDescription;
    std::string mDefault;
    std::string mEnvironment; // the variable that stands for it
    EOffer mOffer = EOffer::Nothing;
    bool mMayHaveValue = false; // a flag that takes a value behind a `=`
    bool mIsRequired = false;
    bool mIsRepeated = false;
};

/** A program or a command of it. */
struct SCommandFacts
{
    std::vector<std::string> mPath; // "aaxhost", "state", "save"
    std::string mDescription;
    std::string mNotes; // what stands below the options
    std::string mExitCodes;
    std::vector<SOptionFacts> mOptions;
    std::vector<SOptionFacts> mMoreOptions; // those of the command above that may stand here as well
    std::vector<SOptionFacts> mArguments;
    std::vector<SCommandFacts> mCommands;
    bool mNeedsCommand = false;

    const std::string& Name() const { return mPath.back(); }
};

/** Begins what is said of the exit codes, at the end of a footer or a description. */
inline constexpr char kExitCodes[] = "Exit code: ";

/** What the definition says, without what is hidden. */
SCommandFacts FactsOf(CLI::App& inApp, const NameLists& inLists);

/** "aaxhost state save", or with another sign between the words. */
std::string JoinWords(const std::vector<std::string>& inWords, const std::string& inBetween = " ");

/** Of the program and all of its commands, each ahead of its own. */
std::vector<const SCommandFacts*> WithCommandsBelow(const SCommandFacts& inCommand);
