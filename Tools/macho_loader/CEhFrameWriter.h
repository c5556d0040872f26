#pragma once
#include "Tools/macho_loader/ByteAppend.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <utility>

/** One function as the unwinder of this machine is told of it; addresses in memory. */
struct SUnwindFunction
{
    std::uint64_t mCode = 0;
    std::uint64_t mSize = 0;
    std::uint64_t mPersonality = 0;  // 0: no handler
    std::uint64_t mLanguageData = 0; // 0: nothing
    ByteVector mCommonInstructions;  // those that functions share
    ByteVector mInstructions;
};

/** Bytes of the number that each entry of such a table begins with. */
inline constexpr std::size_t kLengthSize = 4;

/** Writes a DWARF frame table with absolute addresses, so that it is valid wherever it lies. */
class CEhFrameWriter
{
public:
    void Add(const SUnwindFunction& inFunction);
    /** Ends the table and gives it away. */
    ByteVector Take();

private:
    std::size_t CommonPart(const SUnwindFunction& inFunction);
    std::size_t BeginEntry();
    void EndEntry(std::size_t inStart);

    ByteVector mBytes;
    std::map<std::pair<std::uint64_t, ByteVector>, std::size_t> mCommonParts; // where each one starts
};
