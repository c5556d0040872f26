#pragma once
#include "Tools/commandline/CommandFacts.h"

/**
 * Gives the program the option `--write-documents FOLDER`, which the build uses and the help does not show.
 * It writes what is installed below `share`: the manual pages and the shells' completions, all from the
 * definition of the command line. Comes last, since a command that is added later is not in them.
 *
 * @param ioApp has to outlive the reading of the command line.
 * @param inVersion "aaxhost 0.1.0"
 */
void AddDocumentsOption(CLI::App& ioApp, const std::string& inVersion, const NameLists& inLists);

/** Says what the exit codes are wherever a command below the program does not say it of itself. */
void AddExitCodes(CLI::App& ioApp, const std::string& inExitCodes);
