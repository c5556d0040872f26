#include "Tools/support/ProgramPath.h"

#include <filesystem>

std::string ProgramPath()
{
    std::error_code none;
    return std::filesystem::read_symlink("/proc/self/exe", none).string();
}
