#include "Platform/PluginImage.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <dlfcn.h>
#include <elf.h>

namespace
{
namespace fs = std::filesystem;

template <typename Record>
bool ReadRecord(std::ifstream& ioFile, std::uint64_t inOffset, Record& outRecord)
{
    ioFile.seekg(static_cast<std::streamoff>(inOffset));
    ioFile.read(reinterpret_cast<char*>(&outRecord), sizeof(outRecord));
    return ioFile.good();
}

/**
 * Whether a file holds every byte that loading it would map. The system's loader doesn't look, and a file
 * that was cut short ends the process with a bus error when the missing pages are touched.
 */
bool IsWholeImage(const std::string& inPath)
{
    std::error_code error;
    const std::uint64_t size = fs::file_size(inPath, error);
    std::ifstream file(inPath, std::ios::binary);
    Elf64_Ehdr header{};
    if (error || !ReadRecord(file, 0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0)
        return false;
    for (std::uint64_t i = 0; i < header.e_phnum; ++i)
    {
        Elf64_Phdr segment{};
        if (!ReadRecord(file, header.e_phoff + i * sizeof(segment), segment) || segment.p_offset > size ||
            (segment.p_type == PT_LOAD && segment.p_filesz > size - segment.p_offset))
            return false;
    }
    return true;
}

/** An executable is unloaded on request only: dropping the object leaves the handle open. */
class CSharedObjectImage final : public IPluginImage
{
public:
    explicit CSharedObjectImage(std::string inPath) : mPath(std::move(inPath)) {}

    bool LoadExecutable() noexcept override
    {
        if (mHandle == nullptr && IsWholeImage(mPath))
            mHandle = dlopen(mPath.c_str(), RTLD_NOW | RTLD_LOCAL);
        return mHandle != nullptr;
    }

    void* FindSymbol(const char* inName) const noexcept override
    {
        return mHandle != nullptr ? dlsym(mHandle, inName) : nullptr;
    }

    void Unload() noexcept override
    {
        if (mHandle != nullptr)
        {
            (void)dlclose(mHandle); // an object that must stay resident is not this caller's concern
            mHandle = nullptr;
        }
    }

private:
    std::string mPath;
    void* mHandle = nullptr;
};

/** @return the shared objects of a folder in the alphabetical order of their names. */
std::vector<std::string> SharedObjects(const fs::path& inFolder)
{
    std::vector<std::string> found;
    std::error_code error;
    for (fs::directory_iterator entry(inFolder, error), end; !error && entry != end; entry.increment(error))
    {
        std::error_code typeError;
        if (entry->path().extension() == ".so" && entry->is_regular_file(typeError))
            found.push_back(entry->path().string());
    }
    std::ranges::sort(found);
    return found;
}
} // namespace

std::vector<std::string> PluginExecutables(const std::string& inUtf8Path)
{
    std::error_code error;
    const fs::file_status status = fs::status(inUtf8Path, error);
    if (fs::is_directory(status))
    {
        std::vector<std::string> inside =
            SharedObjects(fs::path(inUtf8Path) / "Contents" / AAXADAPTER_EXECUTABLE_FOLDER);
        return !inside.empty() ? inside : SharedObjects(inUtf8Path);
    }
    return fs::is_regular_file(status) ? std::vector{inUtf8Path} : std::vector<std::string>{};
}

std::unique_ptr<IPluginImage> OpenPluginImage(const char* inUtf8Path)
{
    if (inUtf8Path == nullptr)
        return nullptr;
    // A relative path would be looked for in the loader's own search path.
    const auto executables =
        fs::path(inUtf8Path).is_absolute() ? PluginExecutables(inUtf8Path) : std::vector<std::string>{};
    return executables.empty() ? nullptr : std::make_unique<CSharedObjectImage>(executables.front());
}

const char* PlatformEntrySymbol() noexcept { return "main"; }
