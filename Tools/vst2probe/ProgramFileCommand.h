#pragma once
#include <string>

namespace CLI
{
class App;
}

/** What the command line says of a preset or bank file. */
struct SProgramFileArguments
{
    std::string plugin; // empty: no such command was given
    std::string file;
    double timeoutSeconds = 20.0;
    bool isBank = false;
    bool isLoad = false;
    bool isChild = false;
};

/** `preset save|load` and `bank save|load`. */
void AddProgramFileCommands(CLI::App& ioApp, SProgramFileArguments& outArguments);

/** @param inProgram this program, to be run again as the child. @return the exit code. */
int RunProgramFileCommand(const std::string& inProgram, const SProgramFileArguments& inArguments);
