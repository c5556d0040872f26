#include "Platform/ModulePath.h"

#include <algorithm>
#include <cstring>

#include <dlfcn.h>

bool FindModulePath(const void* inCodeAddress, std::span<char> outPath) noexcept
{
    if (outPath.empty())
        return false;
    outPath.front() = '\0';
    Dl_info info{};
    if (dladdr(inCodeAddress, &info) == 0 || info.dli_fname == nullptr)
        return false;
    const std::size_t length = std::strlen(info.dli_fname);
    if (length == 0 || length >= outPath.size())
        return false;
    std::copy_n(info.dli_fname, length + 1, outPath.begin());
    return true;
}
