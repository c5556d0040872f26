#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

/** The memory of a loaded image: writable until it is protected, unmapped at the end. */
class CImageMemory
{
public:
    /** @param inLowestAddress the address that the file gives to the first byte. */
    CImageMemory(std::uint64_t inLowestAddress, std::size_t inSize);
    CImageMemory(const CImageMemory&) = delete;
    CImageMemory& operator=(const CImageMemory&) = delete;
    ~CImageMemory();

    std::uint8_t* Base() const { return mBase; }
    std::size_t Size() const { return mSize; }
    bool Contains(const void* inAddress) const;
    /** How far the image lies from the addresses that the file gives. */
    std::uint64_t Slide() const { return reinterpret_cast<std::uint64_t>(mBase) - mLowestAddress; }
    /** The memory at an address that the file gives. Throws CMachOError when it isn't all inside. */
    std::span<std::uint8_t> At(std::uint64_t inAddress, std::size_t inSize) const;
    std::span<std::uint8_t> From(std::uint64_t inAddress) const;
    /** @param inProtection of EProtection. */
    void Protect(std::span<std::uint8_t> inBytes, std::uint32_t inProtection);

private:
    std::uint8_t* mBase = nullptr;
    std::size_t mSize = 0;
    std::uint64_t mLowestAddress = 0;
    std::vector<std::span<std::uint8_t>> mLeakRoots; // where the leak checker looks for pointers
};
