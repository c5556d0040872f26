#pragma once
#include <cstdint>
#include <span>
#include <vector>

/** How to get from one function's frame to its caller's, as an image's compact table says. Offsets count from
 * the image's header. */
struct SUnwindEntry
{
    std::uint32_t mFunction = 0;
    std::uint32_t mSize = 0;            // bytes of code up to the next entry
    std::uint32_t mEncoding = 0;        // of ECompactUnwind
    std::uint32_t mPersonalitySlot = 0; // where the address of the handler lies; 0: no handler
    std::uint32_t mLanguageData = 0;    // what the handler reads; 0: nothing
};

enum ECompactUnwind : std::uint32_t
{
    kUnwindHasLanguageData = 0x40000000,
    kUnwindPersonalityMask = 0x30000000,
    kUnwindModeMask = 0x0F000000,
    kUnwindFrameRbp = 0x01000000,
    kUnwindFrameless = 0x02000000,
    kUnwindFramelessLarge = 0x03000000, // the frame's size stands in the function's code
    kUnwindDwarf = 0x04000000,          // the rest is an offset into the DWARF table
    kUnwindDwarfOffsetMask = 0x00FFFFFF
};

/** Reads the section __unwind_info; functions that need no entry are left out. Throws CMachOError. */
std::vector<SUnwindEntry> ReadUnwindInfo(std::span<const std::uint8_t> inSection);
