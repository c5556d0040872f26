// Preloaded into every program that runs in the emulator, by the sysroot's /etc/ld.so.preload: has it start
// programs for its own processor in the emulator as well. The system underneath can start only its own.
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <vector>

#include <dlfcn.h>
#include <elf.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{
bool NeedsEmulator(const char* inProgram)
{
    std::FILE* const file = std::fopen(inProgram, "rbe");
    if (file == nullptr)
        return false;
    Elf64_Ehdr header{};
    const bool isRead = std::fread(&header, sizeof header, 1, file) == 1;
    (void)std::fclose(file); // was only read
    return isRead && std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 && header.e_machine == EM_AARCH64;
}

/** The system's own programs are to know nothing of this library. */
__attribute__((constructor)) void LeaveTheEnvironment() { (void)unsetenv("LD_PRELOAD"); }

/** A program and its arguments as the system is to start them. */
class CCommand
{
public:
    CCommand(const char* inProgram, char* const* inArguments) : mProgram(inProgram)
    {
        std::size_t first = 0;
        if (NeedsEmulator(inProgram))
        {
            mProgram = EMULATOR;
            for (const char* argument : std::initializer_list<const char*>{
                     EMULATOR, "-L", SYSROOT, "-E", "LD_PRELOAD=" LIBRARY, "-0", inArguments[0], inProgram})
                mArguments.push_back(const_cast<char*>(argument)); // the interface's type; not written
            first = 1;
        }
        for (; inArguments[first] != nullptr; ++first)
            mArguments.push_back(inArguments[first]);
        mArguments.push_back(nullptr);
    }
    const char* Program() const { return mProgram; }
    char* const* Arguments() const { return mArguments.data(); }

private:
    const char* mProgram;
    std::vector<char*> mArguments;
};
} // namespace

extern "C" int execve(const char* inProgram, char* const* inArguments, char* const* inEnvironment) noexcept
{
    const CCommand command(inProgram, inArguments);
    return static_cast<int>(syscall(SYS_execve, command.Program(), command.Arguments(), inEnvironment));
}

extern "C" int execv(const char* inProgram, char* const* inArguments) noexcept
{
    return execve(inProgram, inArguments, environ);
}

extern "C" int execvp(const char* inProgram, char* const* inArguments) noexcept
{
    if (std::strchr(inProgram, '/') != nullptr)
        return execve(inProgram, inArguments, environ);
    static const auto real = reinterpret_cast<decltype(&execvp)>(dlsym(RTLD_NEXT, "execvp"));
    return real(inProgram, inArguments); // one of the system's own
}

extern "C" int posix_spawn(pid_t* outProcess, const char* inProgram,
                           const posix_spawn_file_actions_t* inFiles, const posix_spawnattr_t* inAttributes,
                           char* const* inArguments, char* const* inEnvironment)
{
    static const auto real = reinterpret_cast<decltype(&posix_spawn)>(dlsym(RTLD_NEXT, "posix_spawn"));
    const CCommand command(inProgram, inArguments);
    return real(outProcess, command.Program(), inFiles, inAttributes, command.Arguments(), inEnvironment);
}
