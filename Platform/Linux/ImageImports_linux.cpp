#include "Platform/ImageImports.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include <elf.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

namespace
{
// The kinds of relocation that hold the address of a foreign function.
#if defined(__aarch64__)
constexpr std::uint32_t kImportKinds[] = {R_AARCH64_JUMP_SLOT, R_AARCH64_GLOB_DAT, R_AARCH64_ABS64};
#else
constexpr std::uint32_t kImportKinds[] = {R_X86_64_JUMP_SLOT, R_X86_64_GLOB_DAT, R_X86_64_64};
#endif

/** The parts of one image that say what it imports. */
struct SImage
{
    std::uintptr_t mAddress = 0; // asked for
    std::uintptr_t mBase = 0;
    const Elf64_Dyn* mDynamic = nullptr;
    std::uintptr_t mReadOnlyBegin = 0; // what the loader protected after it had bound the image
    std::uintptr_t mReadOnlyEnd = 0;
};

int FindImage(dl_phdr_info* inInfo, std::size_t, void* ioImage)
{
    auto& image = *static_cast<SImage*>(ioImage);
    SImage candidate{image.mAddress, inInfo->dlpi_addr};
    bool isIt = false;
    for (int i = 0; i < inInfo->dlpi_phnum; ++i)
    {
        const Elf64_Phdr& segment = inInfo->dlpi_phdr[i];
        const std::uintptr_t begin = inInfo->dlpi_addr + segment.p_vaddr;
        if (segment.p_type == PT_LOAD)
            isIt = isIt || (image.mAddress >= begin && image.mAddress < begin + segment.p_memsz);
        else if (segment.p_type == PT_DYNAMIC)
            candidate.mDynamic = reinterpret_cast<const Elf64_Dyn*>(begin);
        else if (segment.p_type == PT_GNU_RELRO)
        {
            candidate.mReadOnlyBegin = begin;
            candidate.mReadOnlyEnd = begin + segment.p_memsz;
        }
    }
    if (!isIt || candidate.mDynamic == nullptr)
        return 0;
    image = candidate;
    return 1; // ends the search
}

/** The value of a dynamic entry; 0 when there is none. */
std::uint64_t Entry(const SImage& inImage, std::int64_t inTag) noexcept
{
    for (const Elf64_Dyn* entry = inImage.mDynamic; entry->d_tag != DT_NULL; ++entry)
        if (entry->d_tag == inTag)
            return entry->d_un.d_val;
    return 0;
}

/** Writes a pointer, also into a table that the loader has made read-only. */
void Write(const SImage& inImage, void** outSlot, void* inValue) noexcept
{
    const auto address = reinterpret_cast<std::uintptr_t>(outSlot);
    const auto pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    void* const page = reinterpret_cast<void*>(address & ~(pageSize - 1));
    // A slot is aligned, so it is within one page.
    const bool isProtected = address >= inImage.mReadOnlyBegin && address < inImage.mReadOnlyEnd;
    if (isProtected && mprotect(page, pageSize, PROT_READ | PROT_WRITE) != 0)
        return;
    *outSlot = inValue;
    if (isProtected)
        (void)mprotect(page, pageSize, PROT_READ); // else it stays as the loader had it before
}

/** Calls inUse(name, slot) for each place where the image keeps an imported function's address. */
template <class Use>
void ForEachImport(const SImage& inImage, Use inUse) noexcept
{
    // The loader has turned these into addresses.
    const auto* const symbols = reinterpret_cast<const Elf64_Sym*>(Entry(inImage, DT_SYMTAB));
    const auto* const names = reinterpret_cast<const char*>(Entry(inImage, DT_STRTAB));
    if (symbols == nullptr || names == nullptr)
        return;
    const std::pair<std::uint64_t, std::uint64_t> tables[] = {
        {Entry(inImage, DT_JMPREL), Entry(inImage, DT_PLTRELSZ)},
        {Entry(inImage, DT_RELA), Entry(inImage, DT_RELASZ)}};
    for (const auto& [address, size] : tables)
        for (const Elf64_Rela& place :
             std::span(reinterpret_cast<const Elf64_Rela*>(address), size / sizeof(Elf64_Rela)))
        {
            if (std::ranges::find(kImportKinds, ELF64_R_TYPE(place.r_info)) != std::end(kImportKinds))
                inUse(std::string_view(names + symbols[ELF64_R_SYM(place.r_info)].st_name),
                      reinterpret_cast<void**>(inImage.mBase + place.r_offset));
        }
}

bool Find(const void* inCodeAddress, SImage& outImage) noexcept
{
    outImage.mAddress = reinterpret_cast<std::uintptr_t>(inCodeAddress);
    return dl_iterate_phdr(&FindImage, &outImage) == 1;
}
} // namespace

bool FindImports(const void* inCodeAddress, std::span<SImportPatch> ioPatches) noexcept
{
    SImage image;
    if (!Find(inCodeAddress, image))
        return false;
    ForEachImport(image,
                  [&](std::string_view inName, void** inSlot)
                  {
                      const auto patch = std::ranges::find(ioPatches, inName, &SImportPatch::mName);
                      if (patch != ioPatches.end())
                          patch->mOriginal = *inSlot;
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
                          Write(image, inSlot, patch->mReplacement);
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
                          Write(image, inSlot, patch->mOriginal);
                  });
}
