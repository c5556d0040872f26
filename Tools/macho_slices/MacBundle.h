#pragma once
#include <string>

/**
 * @param inPlugin a file, or a bundle folder as macOS has it.
 * @return the executable: the file itself, or the one that the bundle's property list names, else the first
 * by name in Contents/MacOS. Empty where there is none.
 */
std::string FindMacExecutable(const std::string& inPlugin);
