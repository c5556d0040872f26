#include "Tools/commandline/Documents.h"

#include "Tools/commandline/Completion.h"
#include "Tools/commandline/ManPage.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>

namespace
{
namespace fs = std::filesystem;

void WriteDocument(const fs::path& inFile, const std::string& inText)
{
    std::error_code ignored; // the file then cannot be written
    fs::create_directories(inFile.parent_path(), ignored);
    std::ofstream file(inFile, std::ios::binary);
    file << inText;
    file.close();
    if (!file)
        throw CLI::FileError(inFile.string() + " cannot be written.");
}

void WriteDocuments(const fs::path& inFolder, const SCommandFacts& inProgram, const std::string& inVersion,
                    const NameLists& inLists)
{
    const auto writePage = [&](const SCommandFacts& command)
    {
        WriteDocument(inFolder / "man/man1" / (ManPageName(command) + ".1"),
                      ManPage(command, inProgram, inVersion));
    };
    writePage(inProgram);
    for (const SCommandFacts& command : inProgram.mCommands)
        writePage(command);
    const std::string& name = inProgram.Name();
    WriteDocument(inFolder / "bash-completion/completions" / name, BashCompletion(inProgram, inLists));
    WriteDocument(inFolder / "zsh/site-functions" / ("_" + name), ZshCompletion(inProgram, inLists));
    WriteDocument(inFolder / "fish/vendor_completions.d" / (name + ".fish"),
                  FishCompletion(inProgram, inLists));
}
} // namespace

void AddDocumentsOption(CLI::App& ioApp, const std::string& inVersion, const NameLists& inLists)
{
    const auto write = [&ioApp, inVersion, inLists](const std::string& folder)
    {
        WriteDocuments(folder, FactsOf(ioApp, inLists), inVersion, inLists);
        throw CLI::Success();
    };
    ioApp.add_option_function<std::string>("--write-documents", write)
        ->group("") // not in the help
        ->trigger_on_parse();
}

void AddExitCodes(CLI::App& ioApp, const std::string& inExitCodes)
{
    const auto says = [](const std::string& text) { return text.find(kExitCodes) != std::string::npos; };
    if (const std::string notes = ioApp.get_footer(); !says(notes) && !says(ioApp.get_description()))
        ioApp.footer(notes + (notes.empty() ? "" : " ") + kExitCodes + inExitCodes);
    for (CLI::App* const command : ioApp.get_subcommands(nullptr))
        AddExitCodes(*command, inExitCodes);
}
