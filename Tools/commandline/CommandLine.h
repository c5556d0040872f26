#pragma once
#include <string>
#include <vector>

namespace CLI
{
class App;
class ParseError;
} // namespace CLI

/** Gives the program and all of its commands `--version`; comes after the commands were added. */
void AddVersionFlag(CLI::App& ioApp, const std::string& inProgram);

/** "aaxhost 0.1.0" */
std::string ProgramVersion(const std::string& inProgram);

/** The names of the commands that stand directly below. */
std::vector<std::string> CommandNames(const CLI::App& inApp);

/**
 * @return one sentence, or what the parser says, about a command line that was refused; a command or option
 * that there is not comes with the nearest that there is.
 */
std::string UsageSentence(const CLI::App& inApp, const CLI::ParseError& inError);
