#pragma once
#include <cstdint>
#include <string>
#include <vector>

/** The part of a Mach-O file that is for one processor; a file that is not universal is one such part. */
struct SMachOSlice
{
    std::uint32_t mProcessor = 0; // as the format numbers them
    std::uint32_t mKind = 0;      // of that processor, without the flags
    std::uint64_t mOffset = 0;    // bytes from the file's start
    std::uint64_t mSize = 0;

    /** @return as compilers and the system call it, such as "arm64". */
    std::string ProcessorName() const;
};

inline constexpr std::uint32_t kMachOProcessorX86_64 = 0x01000007;
inline constexpr std::uint32_t kMachOProcessorArm64 = 0x0100000C;

/** What the headers of a file say. */
struct SMachOSlices
{
    std::vector<SMachOSlice> mSlices; // in the file's order; none where there is a fault
    std::string mFault;               // what a sentence says of the file, such as "is cut short"; or empty
    bool mIsMachO = false;            // a fault of one that begins like such a file, else one of any other

    /** @return "x86_64 and arm64" and the like. */
    std::string ProcessorNames() const;
};

/**
 * Reads the headers of a file, which may be any file: every slice lies in it, apart from the others, and is
 * for the processor that the file's table says.
 */
SMachOSlices ReadMachOSlices(const std::string& inPath);
