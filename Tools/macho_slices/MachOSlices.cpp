#include "Tools/macho_slices/MachOSlices.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <optional>
#include <utility>

namespace
{
// Universal files have a table in front, most significant byte first; a slice has its processor's order.
constexpr std::uint32_t kTable32 = 0xCAFEBABE;
constexpr std::uint32_t kTable64 = 0xCAFEBABF;
constexpr std::uint32_t kSlice32 = 0xFEEDFACE;
constexpr std::uint32_t kSlice64 = 0xFEEDFACF;
// Files of Java begin like a table, with a version in place of the count, of which the lowest is 45.
constexpr std::uint32_t kMostSlices = 44;
constexpr std::uint32_t kKindMask = 0x00FFFFFF;
constexpr std::uint64_t kTableStart = 8;

struct SProcessorName
{
    std::uint32_t mProcessor;
    std::uint32_t mKind;
    bool mIsAnyKind;
    const char* mName;
};
constexpr SProcessorName kNames[] = {{kMachOProcessorX86_64, 8, false, "x86_64h"},
                                     {kMachOProcessorX86_64, 0, true, "x86_64"},
                                     {kMachOProcessorArm64, 2, false, "arm64e"},
                                     {kMachOProcessorArm64, 0, true, "arm64"},
                                     {7, 0, true, "i386"},
                                     {18, 0, true, "ppc"},
                                     {0x01000012, 0, true, "ppc64"}};

/** Reads numbers anywhere in a file. */
class CFileNumbers
{
public:
    explicit CFileNumbers(const std::string& inPath) : mFile(inPath, std::ios::binary)
    {
        mFile.seekg(0, std::ios::end);
        const auto end = static_cast<std::int64_t>(mFile.tellg());
        mSize = end > 0 ? static_cast<std::uint64_t>(end) : 0;
    }

    std::uint64_t Size() const { return mSize; }
    /** @return nothing where the file ends before. */
    template <class Number>
    std::optional<Number> Read(std::uint64_t inOffset, bool inHighestFirst)
    {
        std::array<unsigned char, sizeof(Number)> bytes{};
        if (inOffset > mSize || mSize - inOffset < bytes.size())
            return std::nullopt;
        mFile.clear();
        mFile.seekg(static_cast<std::streamoff>(inOffset));
        mFile.read(reinterpret_cast<char*>(bytes.data()), bytes.size());
        if (!mFile)
            return std::nullopt;
        if (!inHighestFirst)
            std::ranges::reverse(bytes);
        Number number = 0;
        for (const unsigned char byte : bytes)
            number = static_cast<Number>(number << 8 | byte);
        return number;
    }

private:
    std::ifstream mFile;
    std::uint64_t mSize = 0;
};

SMachOSlices Fault(std::string inFault) { return {{}, std::move(inFault), true}; }

SMachOSlices CutShort(const CFileNumbers& inFile)
{
    return Fault("is cut short: " + std::to_string(inFile.Size()) + " bytes are not all of it");
}

/** @return which of the two orders the slice's header has; nothing where no slice begins there. */
std::optional<bool> IsHighestFirst(CFileNumbers& ioFile, std::uint64_t inOffset)
{
    for (const bool highestFirst : {false, true})
    {
        const auto magic = ioFile.Read<std::uint32_t>(inOffset, highestFirst);
        if (magic == kSlice32 || magic == kSlice64)
            return highestFirst;
    }
    return std::nullopt;
}

/** Reads what the slice at the offset says of itself. @return false where its headers are not all there. */
bool ReadSlice(CFileNumbers& ioFile, bool inHighestFirst, SMachOSlice& ioSlice)
{
    const auto number = [&](std::uint64_t inPlace)
    { return ioFile.Read<std::uint32_t>(ioSlice.mOffset + inPlace, inHighestFirst); };
    const auto magic = number(0);
    const auto processor = number(4);
    const auto kind = number(8);
    const auto commandBytes = number(20);
    if (!magic || !processor || !kind || !commandBytes)
        return false;
    ioSlice.mProcessor = *processor;
    ioSlice.mKind = *kind & kKindMask;
    const std::uint64_t headerSize = *magic == kSlice64 ? 32 : 28;
    return headerSize + *commandBytes <= ioSlice.mSize;
}

/** @return an offset or a size of the table. */
std::optional<std::uint64_t> ReadPlace(CFileNumbers& ioFile, std::uint64_t inOffset, bool inIsWide)
{
    if (inIsWide)
        return ioFile.Read<std::uint64_t>(inOffset, true);
    return ioFile.Read<std::uint32_t>(inOffset, true);
}

SMachOSlices ReadTable(CFileNumbers& ioFile, bool inIsWide)
{
    const auto count = ioFile.Read<std::uint32_t>(4, true);
    if (!count)
        return CutShort(ioFile);
    if (*count == 0 || *count > kMostSlices)
        return Fault("has a table of " + std::to_string(*count) + " processors");

    const std::uint64_t rowSize = inIsWide ? 32 : 20;
    std::uint64_t freeFrom = kTableStart + *count * rowSize;
    std::vector<SMachOSlice> rows;
    for (std::uint64_t row = kTableStart; row < freeFrom; row += rowSize)
    {
        const auto processor = ioFile.Read<std::uint32_t>(row, true);
        const auto kind = ioFile.Read<std::uint32_t>(row + 4, true);
        const auto offset = ReadPlace(ioFile, row + 8, inIsWide);
        const auto size = ReadPlace(ioFile, row + (inIsWide ? 16 : 12), inIsWide);
        if (!processor || !kind || !offset || !size || *offset > ioFile.Size() ||
            *size > ioFile.Size() - *offset)
            return CutShort(ioFile);
        rows.push_back({*processor, *kind & kKindMask, *offset, *size});
    }

    std::vector<SMachOSlice> byPlace = rows;
    std::ranges::sort(byPlace, {}, &SMachOSlice::mOffset);
    for (const SMachOSlice& slice : byPlace)
    {
        if (slice.mOffset < freeFrom)
            return Fault("has parts that overlap");
        freeFrom = slice.mOffset + slice.mSize;
    }
    for (const SMachOSlice& row : rows)
    {
        SMachOSlice slice = row;
        const auto highestFirst = IsHighestFirst(ioFile, row.mOffset);
        if (!highestFirst || !ReadSlice(ioFile, *highestFirst, slice))
            return Fault("has a part for " + row.ProcessorName() + " that is broken");
        if (slice.mProcessor != row.mProcessor || slice.mKind != row.mKind)
        {
            return Fault("has a part for " + row.ProcessorName() + " that says it is for " +
                         slice.ProcessorName());
        }
    }
    return {rows, "", true};
}
} // namespace

std::string SMachOSlice::ProcessorName() const
{
    const auto* const found = std::ranges::find_if(
        kNames, [&](const SProcessorName& inName)
        { return inName.mProcessor == mProcessor && (inName.mIsAnyKind || inName.mKind == mKind); });
    return found != std::end(kNames) ? found->mName : "processor " + std::to_string(mProcessor);
}

std::string SMachOSlices::ProcessorNames() const
{
    std::string names;
    for (std::size_t i = 0; i < mSlices.size(); ++i)
    {
        if (i != 0)
            names += i + 1 == mSlices.size() ? " and " : ", ";
        names += mSlices[i].ProcessorName();
    }
    return names;
}

SMachOSlices ReadMachOSlices(const std::string& inPath)
{
    CFileNumbers file(inPath);
    const auto magic = file.Read<std::uint32_t>(0, true);
    if (magic == kTable32 || magic == kTable64)
        return ReadTable(file, magic == kTable64);
    const auto highestFirst = IsHighestFirst(file, 0);
    if (!highestFirst)
        return {{}, "is no Mach-O file", false};
    SMachOSlice slice{0, 0, 0, file.Size()};
    if (!ReadSlice(file, *highestFirst, slice))
        return CutShort(file);
    return {{slice}, "", true};
}
