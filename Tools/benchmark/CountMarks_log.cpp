#include "Tools/benchmark/CountMarks.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include <link.h>

// The emulator writes a line for each instruction to the standard error, and these go in between.

namespace
{
/** "code BEGIN END NAME", in the digits of the emulator's lines. */
int TellCode(dl_phdr_info* inImage, std::size_t, void*)
{
    const std::string_view path = inImage->dlpi_name;
    for (int i = 0; i < inImage->dlpi_phnum; ++i)
    {
        const auto& segment = inImage->dlpi_phdr[i];
        const std::uint64_t begin = inImage->dlpi_addr + segment.p_vaddr;
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0)
            std::fprintf(stderr, "code %016" PRIx64 " %016" PRIx64 " %s\n", begin, begin + segment.p_memsz,
                         path.empty() ? "program" : inImage->dlpi_name);
    }
    return 0;
}
} // namespace

void BeginCount()
{
    dl_iterate_phdr(&TellCode, nullptr);
    std::fputs("begin\n", stderr);
}

void EndCount(const std::string& inName) { std::fprintf(stderr, "end %s\n", inName.c_str()); }
