#pragma once
#include <string>

struct SCommandFacts;

/**
 * The manual page of a program or of one of its commands, in the language of man(7), of ASCII signs only.
 *
 * @param inProgram whose other pages are named; the commands below `inCommand` have no pages of their own
 * unless it is the program.
 * @param inVersion "aaxhost 0.1.0"
 */
std::string ManPage(const SCommandFacts& inCommand, const SCommandFacts& inProgram,
                    const std::string& inVersion);

/** "aaxhost-check" */
std::string ManPageName(const SCommandFacts& inCommand);
