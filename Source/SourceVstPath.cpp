#include "Source/SourceVstPath.h"

#include "Platform/ModulePath.h"

#include <array>
#include <cstring>
#include <string_view>

namespace
{
constexpr std::string_view kPathInBundle = "/Resources/source.vst";

// Written with the same content by every call; the host's main thread only.
std::array<char, kSourceVstPathSize> gPath{};

std::string_view WithoutLastComponent(std::string_view inPath) noexcept
{
    const std::size_t slash = inPath.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : inPath.substr(0, slash);
}

bool HasTwoComponentsToCut(std::string_view inPath) noexcept
{
    const std::size_t last = inPath.rfind('/');
    return last != std::string_view::npos && inPath.substr(0, last).find('/') != std::string_view::npos;
}
} // namespace

void CreateSourceVstPath(const char* inModulePath, char* outPath)
{
    *outPath = '\0';
    const std::string_view module(inModulePath);
    if (!HasTwoComponentsToCut(module))
        return;
    const std::string_view contents = WithoutLastComponent(WithoutLastComponent(module));
    if (contents.size() + kPathInBundle.size() >= kSourceVstPathSize)
        return;
    std::memcpy(outPath, contents.data(), contents.size());
    std::memcpy(outPath + contents.size(), kPathInBundle.data(), kPathInBundle.size());
    outPath[contents.size() + kPathInBundle.size()] = '\0';
}

void CreateSourceVstPath(char* outPath)
{
    *outPath = '\0';
    std::array<char, kSourceVstPathSize> modulePath{};
    if (FindModulePath(reinterpret_cast<const void*>(static_cast<void (*)(char*)>(&CreateSourceVstPath)),
                       modulePath))
        CreateSourceVstPath(modulePath.data(), outPath);
}

char* GetSourcePath()
{
    CreateSourceVstPath(gPath.data());
    return gPath.data();
}
