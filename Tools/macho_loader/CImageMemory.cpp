#include "Tools/macho_loader/CImageMemory.h"

#include "Tools/macho_loader/CByteReader.h"
#include "Tools/macho_loader/MachOFormat.h"

#include <functional>

#include <sys/mman.h>

// Of the leak checker; null where the program is built without it.
extern "C" [[gnu::weak]] void __lsan_register_root_region(const void* inStart, std::size_t inSize);
extern "C" [[gnu::weak]] void __lsan_unregister_root_region(const void* inStart, std::size_t inSize);

CImageMemory::CImageMemory(std::uint64_t inLowestAddress, std::size_t inSize)
    : mSize(inSize), mLowestAddress(inLowestAddress)
{
    void* const memory = mmap(nullptr, inSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        throw CMachOError("no memory for the image");
    mBase = static_cast<std::uint8_t*>(memory);
}

CImageMemory::~CImageMemory()
{
    for (const auto& root : mLeakRoots)
        __lsan_unregister_root_region(root.data(), root.size());
    (void)munmap(mBase, mSize); // can't fail for a range that was mapped
}

bool CImageMemory::Contains(const void* inAddress) const
{
    const auto* const address = static_cast<const std::uint8_t*>(inAddress);
    return !std::less<>()(address, mBase) && std::less<>()(address, mBase + mSize);
}

std::span<std::uint8_t> CImageMemory::From(std::uint64_t inAddress) const
{
    return At(inAddress, mSize - (inAddress - mLowestAddress));
}

std::span<std::uint8_t> CImageMemory::At(std::uint64_t inAddress, std::size_t inSize) const
{
    const std::uint64_t offset = inAddress - mLowestAddress;
    if (inAddress < mLowestAddress || offset > mSize || inSize > mSize - offset)
        throw CMachOError("an address lies outside the image");
    return {mBase + offset, inSize};
}

void CImageMemory::Protect(std::span<std::uint8_t> inBytes, std::uint32_t inProtection)
{
    const bool isWritable = (inProtection & macho::kWrite) != 0;
    const int protection = ((inProtection & macho::kRead) != 0 ? PROT_READ : 0) |
                           (isWritable ? PROT_WRITE : 0) |
                           ((inProtection & macho::kExecute) != 0 ? PROT_EXEC : 0);
    if (!inBytes.empty() && mprotect(inBytes.data(), inBytes.size(), protection) != 0)
        throw CMachOError("a segment cannot be protected");
    if (isWritable && __lsan_register_root_region != nullptr)
    {
        __lsan_register_root_region(inBytes.data(), inBytes.size());
        mLeakRoots.push_back(inBytes);
    }
}
