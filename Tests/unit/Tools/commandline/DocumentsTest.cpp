#include "Tests/support/CTestFolder.h"
#include "Tests/support/FileContents.h"
#include "Tests/support/ToolRun.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;

const std::string kPrograms[] = {"aaxhost", "vst2probe"};

/** Errors as well. */
SToolRun RunWithErrors(const std::string& inCommand) { return RunShell("exec 2>&1; " + inCommand); }

bool IsInstalled(const std::string& inTool) { return RunWithErrors("command -v " + inTool).mExit == 0; }

/** The words that begin the lines below a heading of the help: "Subcommands:". */
std::set<std::string> WordsBelow(const std::string& inHelp, const std::string& inHeading)
{
    std::set<std::string> words;
    std::istringstream lines(inHelp);
    bool isBelow = false;
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with(' '))
            isBelow = line == inHeading + ":";
        else if (isBelow && line.size() > 2 && line[2] != ' ')
            words.insert(line.substr(2, line.find_first_of(" {", 2) - 2));
    return words;
}

/** Without what the page's language adds to the text. */
std::string PlainPage(const fs::path& inFile)
{
    return std::regex_replace(std::regex_replace(Contents(inFile), std::regex(R"(\\f[BIR])"), ""),
                              std::regex(R"(\\-)"), "-");
}

fs::path PageOf(const std::string& inProgram, const std::string& inName)
{
    return fs::path(DOCUMENTS) / inProgram / "man" / "man1" / (inName + ".1");
}

TEST(Documents, APageSaysAllThatTheHelpSays)
{
    std::set<fs::path> expected;
    std::size_t count = 0;
    // The commands below one that has a page are on it.
    const std::function<void(const std::string&, const std::string&, const fs::path&)> compare =
        [&](const std::string& program, const std::string& command, const fs::path& page)
    {
        SCOPED_TRACE(command);
        expected.insert(page);
        const std::string help = RunWithErrors(std::string(PROGRAMS) + "/" + command + " --help").mOutput;
        const std::string text = PlainPage(page);
        EXPECT_NE(help.find("Exit code: 0 "), std::string::npos) << help;
        EXPECT_NE(text.find("\n.SH EXIT STATUS\n0 "), std::string::npos);
        for (const char* heading : {"Options", "Positionals"})
            for (const std::string& names : WordsBelow(help, heading))
            {
                const std::string entry =
                    "\n.TP\n" + std::regex_replace(names, std::regex(","), ", "); // "-h, --help"
                EXPECT_NE(text.find(entry), std::string::npos) << entry;
                ++count;
            }
        std::smatch variable;
        for (std::string rest = help; std::regex_search(rest, variable, std::regex(R"(\(Env:(\w+)\))"));
             rest = variable.suffix())
            EXPECT_NE(text.find(".TP\n" + variable[1].str() + "\nStands for --"), std::string::npos)
                << variable[1];
        for (const std::string& below : WordsBelow(help, "Subcommands"))
            compare(program, (command == program ? command : command + " FILE") + " " + below,
                    command == program ? PageOf(program, program + "-" + below) : page);
    };
    std::set<fs::path> found;
    for (const std::string& program : kPrograms)
    {
        compare(program, program, PageOf(program, program));
        for (const auto& entry : fs::directory_iterator(PageOf(program, program).parent_path()))
            found.insert(entry.path());
    }
    EXPECT_EQ(found, expected);
    EXPECT_GT(count, 60U);
}

TEST(Documents, ToolsThatReadPagesHaveNothingToSay)
{
    bool isAnyInstalled = false;
    for (const char* command :
         {"man --warnings -E UTF-8 -l -Tutf8 -Z", "groff -man -ww -Tutf8 -Z", "mandoc -Tlint -Wstyle"})
    {
        const std::string tool = std::string(command).substr(0, std::string(command).find(' '));
        if (!IsInstalled(tool))
            continue;
        isAnyInstalled = true;
        for (const std::string& program : kPrograms)
            for (const auto& page : fs::directory_iterator(PageOf(program, program).parent_path()))
            {
                // A page has no date, so that it is the same whenever it is made.
                const SToolRun run = RunWithErrors(
                    std::string("for page in ") + page.path().string() + "; do " + command + " $page " +
                    (tool == "mandoc" ? "| grep -v 'missing date'" : ">/dev/null") + "; done");
                EXPECT_EQ(run.mOutput, "") << command;
            }
    }
    if (!isAnyInstalled)
        GTEST_SKIP() << "none of man, groff and mandoc is installed";
}

TEST(Completion, BashProposesWhatMayFollow)
{
    const CTestFolder folder;
    fs::create_directories(folder.Path() / "A.aaxplugin");
    std::ofstream(folder.Path() / "left.txt") << "\n";
    struct SRow
    {
        const char* mLine;
        const char* mPieces; // as bash cuts the line; empty where it does so at blanks only
        const char* mProposed;
    };
    const SRow rows[] = {
        {"aaxhost st", "", "state"},
        {"aaxhost --in-process des", "", "describe"},
        {"aaxhost check --str", "", "--strictness"},
        {"aaxhost check --only state.rou", "", "state.round-trip"},
        {"aaxhost check --skip autom", "", "automation automation.*"},
        {"aaxhost check --only=life-c", "aaxhost check --only = life-c", "life-cycle life-cycle.*"},
        {"aaxhost check --skip @le", "aaxhost check --skip @ le", "@left.txt"},
        {"aaxhost check A.aaxplugin l", "", "left.txt"},
        {"aaxhost check --junit l", "", "left.txt"},
        {"aaxhost check --jobs ", "", ""},
        {"aaxhost render --answers ", "", "at-once last late"},
        {"aaxhost render --answers=a", "aaxhost render --answers = a", "at-once"},
        {"aaxhost render --output state --set", "", "--set"}, // a file's name, and no command
        {"aaxhost render --automate Level=le", "aaxhost render --automate Level = le", "left.txt"},
        {"aaxhost render --jump 1:2 --sto", "aaxhost render --jump 1 : 2 --sto", "--stopped"},
        {"aaxhost state A", "", "A.aaxplugin"},
        {"aaxhost state A.aaxplugin l", "", "load"},
        {"aaxhost state A.aaxplugin load l", "", "left.txt"},
        {"aaxhost state A.aaxplugin load --an", "", "--answers"}, // of the command above
        {"vst2probe A", "", "A.aaxplugin"},
        {"vst2probe p", "", "preset"},
        {"vst2probe bank s", "", "save"},
        {"vst2probe A.aaxplugin --co", "", "--configure-args"},
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.mLine);
        const std::string line = row.mLine;
        const std::string pieces = *row.mPieces != '\0' ? row.mPieces : line;
        const std::string program = line.substr(0, line.find(' '));
        const SToolRun run = RunWithErrors(
            "cd '" + folder.Path().string() + "' && bash --norc -c '. " DOCUMENTS "/" + program +
            "/bash-completion/completions/" + program + "; COMP_LINE=\"" + line + "\"; COMP_WORDS=(" +
            pieces + (line.ends_with(' ') ? " \"\"" : "") + "); COMP_CWORD=$((${#COMP_WORDS[*]} - 1)); _" +
            program + "; printf \"%s\\n\" \"${COMPREPLY[@]}\" | sort'");
        EXPECT_EQ(run.mExit, 0);
        std::string proposed;
        std::istringstream words(run.mOutput);
        for (std::string word; words >> word;)
            proposed += (proposed.empty() ? "" : " ") + word;
        const std::string expected = row.mProposed;
        const std::size_t star = expected.find('*'); // and what follows of that name
        if (star == std::string::npos)
            EXPECT_EQ(proposed, expected);
        else
            EXPECT_EQ(proposed.substr(0, star), expected.substr(0, star));
    }
}

TEST(Completion, EveryOptionOfTheHelpIsProposedAndOtherShellsCanReadTheirScripts)
{
    for (const std::string& program : kPrograms)
    {
        const std::string base = std::string(DOCUMENTS) + "/" + program;
        const std::string scripts[][2] = {{"bash", base + "/bash-completion/completions/" + program},
                                          {"zsh", base + "/zsh/site-functions/_" + program},
                                          {"fish", base + "/fish/vendor_completions.d/" + program + ".fish"}};
        for (const auto& [shell, file] : scripts)
        {
            SCOPED_TRACE(file);
            ASSERT_TRUE(fs::exists(file));
            EXPECT_EQ(IsInstalled(shell) ? RunWithErrors(shell + " -n " + file).mOutput : "", "");
            const std::string text = PlainPage(file);
            const std::string help = RunWithErrors(std::string(PROGRAMS) + "/" + program + " --help").mOutput;
            for (const std::string& command : WordsBelow(help, "Subcommands"))
            {
                EXPECT_NE(text.find(command), std::string::npos) << command;
                const std::string all =
                    RunWithErrors(std::string(PROGRAMS) + "/" + program + " " + command + " --help").mOutput;
                for (const std::string& names : WordsBelow(all, "Options"))
                {
                    const std::string word = names.substr(names.rfind("--") + 2);
                    EXPECT_NE(text.find((shell == "fish" ? "-l " : "--") + word), std::string::npos) << word;
                }
            }
        }
    }
}
} // namespace
