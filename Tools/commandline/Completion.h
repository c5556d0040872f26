#pragma once
#include "Tools/commandline/CommandFacts.h"

#include <string>

/** Scripts by which a shell completes the command lines of a program. A list has names without blanks. */

std::string BashCompletion(const SCommandFacts& inProgram, const NameLists& inLists);
std::string ZshCompletion(const SCommandFacts& inProgram, const NameLists& inLists);
std::string FishCompletion(const SCommandFacts& inProgram, const NameLists& inLists);
