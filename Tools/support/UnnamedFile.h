#pragma once
#include <string>

/** @return a new file without a name in the folder, open for reading and writing; -1 where that is not known.
 */
int OpenUnnamedFile(const std::string& inFolder);
/** Gives it a name, which must be free. @return false with errno. */
bool NameFile(int inFile, const std::string& inPath);
