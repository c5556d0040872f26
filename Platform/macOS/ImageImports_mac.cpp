#include "Platform/ImageImports.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include <dlfcn.h>
#include <mach-o/loader.h>
#include <mach-o/nlist.h>
#include <sys/mman.h>
#include <unistd.h>

namespace
{
using Header = mach_header_64;
using Segment = segment_command_64;
using Section = section_64;

/** The parts of one image that say what it imports. */
struct SImage
{
    const Header* mHeader = nullptr;
    std::intptr_t mSlide = 0;
    const nlist_64* mSymbols = nullptr;
    const char* mNames = nullptr;
    const std::uint32_t* mIndirect = nullptr; // number of the symbol behind each slot
};

template <class Use>
void ForEachCommand(const Header& inHeader, Use inUse) noexcept
{
    const auto* command = reinterpret_cast<const load_command*>(&inHeader + 1);
    for (std::uint32_t i = 0; i < inHeader.ncmds; ++i)
    {
        inUse(*command);
        command =
            reinterpret_cast<const load_command*>(reinterpret_cast<const char*>(command) + command->cmdsize);
    }
}

bool Find(const void* inCodeAddress, SImage& outImage) noexcept
{
    Dl_info info{};
    if (dladdr(inCodeAddress, &info) == 0 || info.dli_fbase == nullptr)
        return false;
    outImage.mHeader = static_cast<const Header*>(info.dli_fbase);
    if (outImage.mHeader->magic != MH_MAGIC_64)
        return false;
    const symtab_command* symbols = nullptr;
    const dysymtab_command* indirect = nullptr;
    const Segment* text = nullptr;
    const Segment* linkEdit = nullptr;
    ForEachCommand(*outImage.mHeader,
                   [&](const load_command& inCommand)
                   {
                       const auto* const segment = reinterpret_cast<const Segment*>(&inCommand);
                       if (inCommand.cmd == LC_SYMTAB)
                           symbols = reinterpret_cast<const symtab_command*>(&inCommand);
                       else if (inCommand.cmd == LC_DYSYMTAB)
                           indirect = reinterpret_cast<const dysymtab_command*>(&inCommand);
                       else if (inCommand.cmd == LC_SEGMENT_64 &&
                                std::strncmp(segment->segname, SEG_TEXT, sizeof(segment->segname)) == 0)
                           text = segment;
                       else if (inCommand.cmd == LC_SEGMENT_64 &&
                                std::strncmp(segment->segname, SEG_LINKEDIT, sizeof(segment->segname)) == 0)
                           linkEdit = segment;
                   });
    if (symbols == nullptr || indirect == nullptr || text == nullptr || linkEdit == nullptr)
        return false;
    outImage.mSlide =
        reinterpret_cast<std::intptr_t>(outImage.mHeader) - static_cast<std::intptr_t>(text->vmaddr);
    // The tables' places are counted from the file's start, of which this segment is mapped.
    const char* const tables = reinterpret_cast<const char*>(
        outImage.mSlide + static_cast<std::intptr_t>(linkEdit->vmaddr - linkEdit->fileoff));
    outImage.mSymbols = reinterpret_cast<const nlist_64*>(tables + symbols->symoff);
    outImage.mNames = tables + symbols->stroff;
    outImage.mIndirect = reinterpret_cast<const std::uint32_t*>(tables + indirect->indirectsymoff);
    return true;
}

/** Calls inUse(name, slot) for each place where the image keeps an imported function's address. */
template <class Use>
void ForEachImport(const SImage& inImage, Use inUse) noexcept
{
    const auto useSection = [&](const Section& inSection)
    {
        const std::uint32_t kind = inSection.flags & SECTION_TYPE;
        if (kind != S_LAZY_SYMBOL_POINTERS && kind != S_NON_LAZY_SYMBOL_POINTERS)
            return;
        auto* const slots =
            reinterpret_cast<void**>(inImage.mSlide + static_cast<std::intptr_t>(inSection.addr));
        for (std::size_t i = 0; i < inSection.size / sizeof(void*); ++i)
        {
            const std::uint32_t symbol = inImage.mIndirect[inSection.reserved1 + i];
            if ((symbol & (INDIRECT_SYMBOL_LOCAL | INDIRECT_SYMBOL_ABS)) != 0)
                continue;
            const std::string_view name = inImage.mNames + inImage.mSymbols[symbol].n_un.n_strx;
            if (name.starts_with('_'))
                inUse(name.substr(1), slots + i);
        }
    };
    ForEachCommand(*inImage.mHeader,
                   [&](const load_command& inCommand)
                   {
                       if (inCommand.cmd != LC_SEGMENT_64)
                           return;
                       const auto& segment = reinterpret_cast<const Segment&>(inCommand);
                       const auto* const sections = reinterpret_cast<const Section*>(&segment + 1);
                       std::for_each(sections, sections + segment.nsects, useSection);
                   });
}

void Write(void** outSlot, void* inValue) noexcept
{
    const auto pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    // A slot is aligned, so it is within one page. Whether the page was read-only is not known; it stays
    // writable.
    void* const page = reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(outSlot) & ~(pageSize - 1));
    if (mprotect(page, pageSize, PROT_READ | PROT_WRITE) == 0)
        *outSlot = inValue;
}
} // namespace

bool FindImports(const void* inCodeAddress, std::span<SImportPatch> ioPatches) noexcept
{
    SImage image;
    if (!Find(inCodeAddress, image))
        return false;
    ForEachImport(image,
                  [&](std::string_view inName, void**)
                  {
                      const auto patch = std::ranges::find(ioPatches, inName, &SImportPatch::mName);
                      // Not the slot's own: as long as it is unbound that leads to a function that overwrites
                      // it.
                      if (patch != ioPatches.end())
                          patch->mOriginal = dlsym(RTLD_DEFAULT, patch->mName);
                  });
    return true;
}

void ReplaceImports(const void* inCodeAddress, std::span<const SImportPatch> inPatches) noexcept
{
    SImage image;
    if (!Find(inCodeAddress, image))
        return;
    ForEachImport(image,
                  [&](std::string_view inName, void** inSlot)
                  {
                      const auto patch = std::ranges::find(inPatches, inName, &SImportPatch::mName);
                      if (patch != inPatches.end() && patch->mOriginal != nullptr)
                          Write(inSlot, patch->mReplacement);
                  });
}

void RestoreImports(const void* inCodeAddress, std::span<const SImportPatch> inPatches) noexcept
{
    SImage image;
    if (!Find(inCodeAddress, image))
        return;
    ForEachImport(image,
                  [&](std::string_view inName, void** inSlot)
                  {
                      const auto patch = std::ranges::find(inPatches, inName, &SImportPatch::mName);
                      if (patch != inPatches.end() && *inSlot == patch->mReplacement)
                          Write(inSlot, patch->mOriginal);
                  });
}
