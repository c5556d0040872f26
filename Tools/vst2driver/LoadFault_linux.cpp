#include "Tools/vst2driver/LoadFault.h"

#include "Platform/PluginImage.h"
#include "Tools/macho_slices/MacBundle.h"
#include "Tools/macho_slices/MachOSlices.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

#include <dlfcn.h>
#include <elf.h>
#include <fmt/format.h>

namespace
{
namespace fs = std::filesystem;

#if defined(__aarch64__)
constexpr std::uint16_t kOwnMachine = EM_AARCH64;
#else
constexpr std::uint16_t kOwnMachine = EM_X86_64;
#endif

template <typename Record>
bool ReadRecord(std::ifstream& ioFile, std::uint64_t inOffset, Record& outRecord)
{
    ioFile.seekg(static_cast<std::streamoff>(inOffset));
    ioFile.read(reinterpret_cast<char*>(&outRecord), sizeof(outRecord));
    return ioFile.good();
}

std::string ProcessorName(std::uint16_t inMachine)
{
    constexpr std::pair<std::uint16_t, const char*> names[] = {
        {EM_386, "32-bit x86"},     {EM_X86_64, "64-bit x86"},    {EM_ARM, "32-bit ARM"},
        {EM_AARCH64, "64-bit ARM"}, {EM_PPC64, "64-bit PowerPC"}, {EM_RISCV, "RISC-V"},
        {EM_LOONGARCH, "LoongArch"}};
    const auto* const found =
        std::ranges::find(names, inMachine, &std::pair<std::uint16_t, const char*>::first);
    return found != std::end(names) ? found->second : fmt::format("machine {}", inMachine);
}

/** @return empty for a file that is none of macOS's. */
std::string MacFileFault(const std::string& inPath)
{
    const SMachOSlices slices = ReadMachOSlices(inPath);
    if (!slices.mIsMachO)
        return {};
    if (!slices.mFault.empty())
        return "its executable is a library for macOS that " + slices.mFault;
    return fmt::format("its executable is a library for macOS, for {}, and cannot be loaded on this system",
                       slices.ProcessorNames());
}

/** What a file that is none of this system's libraries is, by its first bytes. */
std::string OtherKind(const std::string& inPath, const char (&inBytes)[4])
{
    if (std::string fault = MacFileFault(inPath); !fault.empty())
        return fault;
    return std::string_view(inBytes, sizeof(inBytes)).starts_with("MZ")
               ? "its executable is a library for Windows and cannot be loaded on this system"
               : "its executable is no library but a file of another kind";
}

/** @return empty when the file looks like what can be loaded. */
std::string FileFault(const std::string& inPath)
{
    std::ifstream file(inPath, std::ios::binary);
    if (!file)
        return fmt::format("its executable {} cannot be read: {}", inPath, std::strerror(errno));
    std::error_code error;
    const std::uint64_t size = fs::file_size(inPath, error);
    char start[4]{};
    if (size == 0 || error)
        return "its executable is an empty file";
    if (!ReadRecord(file, 0, start) || std::memcmp(start, ELFMAG, SELFMAG) != 0)
        return OtherKind(inPath, start);
    std::string cut = fmt::format("its executable is cut short: {} bytes are not all of it", size);
    Elf64_Ehdr header{};
    if (!ReadRecord(file, 0, header))
        return cut;
    if (header.e_machine != kOwnMachine) // in the same place in 32-bit files
    {
        return fmt::format("its executable is for another processor, {}, and this is {}",
                           ProcessorName(header.e_machine), ProcessorName(kOwnMachine));
    }
    if (header.e_type != ET_DYN)
        return "its executable is no library but a program or a part of one";
    for (std::uint64_t i = 0; i < header.e_phnum; ++i)
    {
        Elf64_Phdr segment{};
        if (!ReadRecord(file, header.e_phoff + i * sizeof(segment), segment) || segment.p_offset > size ||
            (segment.p_type == PT_LOAD && segment.p_filesz > size - segment.p_offset))
            return cut;
    }
    return {};
}

/** What the system's loader said, which names the file in question first. */
std::string LoaderFault(const std::string& inPath)
{
    const char* const said = dlerror();
    std::string text = said != nullptr ? said : "the system's loader does not say why";
    constexpr std::string_view missing = ": cannot open shared object file: No such file or directory";
    if (text.ends_with(missing))
    {
        return fmt::format("it needs the library {}, which is missing",
                           text.substr(0, text.size() - missing.size()));
    }
    if (text.starts_with(inPath + ": "))
        text.erase(0, inPath.size() + 2);
    return "its executable cannot be loaded: " + text;
}
} // namespace

std::string LoadFault(const std::string& inPlugin)
{
    const std::vector<std::string> executables = PluginExecutables(inPlugin);
    std::error_code error;
    if (executables.empty() && fs::is_directory(inPlugin, error))
    {
        if (std::string fault = MacFileFault(FindMacExecutable(inPlugin)); !fault.empty())
            return fault;
        return "there is no executable in it, neither in Contents/" AAXADAPTER_EXECUTABLE_FOLDER
               " nor beside that";
    }
    const std::string executable = !executables.empty() ? executables.front() : inPlugin;
    const std::string fault = FileFault(executable);
    return fault.empty() ? LoaderFault(executable) : fault;
}
