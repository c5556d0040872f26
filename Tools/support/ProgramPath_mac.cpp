#include "Tools/support/ProgramPath.h"

#include <cstdint>
#include <filesystem>

#include <mach-o/dyld.h>

std::string ProgramPath()
{
    std::uint32_t size = 0;
    (void)_NSGetExecutablePath(nullptr, &size); // says how much it takes
    std::string path(size, '\0');
    if (_NSGetExecutablePath(path.data(), &size) != 0)
        return {};
    std::error_code none;
    return std::filesystem::canonical(path.c_str(), none).string();
}
