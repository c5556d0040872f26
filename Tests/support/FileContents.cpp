#include "Tests/support/FileContents.h"

#include <fstream>
#include <sstream>

std::string Contents(const std::filesystem::path& inFile)
{
    std::ostringstream text; // also of a process that ends meanwhile, whose file cannot be read then
    text << std::ifstream(inFile, std::ios::binary).rdbuf();
    return text.str();
}
