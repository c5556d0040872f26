#include "Tools/macho_loader/CMachOFile.h"

#include "Tools/macho_loader/CByteReader.h"
#include "Tools/macho_loader/MachOFormat.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

namespace
{
constexpr std::size_t kHeaderSize = 32;
constexpr std::size_t kNameFieldSize = 16;
constexpr std::uint64_t kPageSize = 0x1000;

std::vector<std::uint8_t> ReadFile(const std::string& inPath)
{
    std::ifstream file(inPath, std::ios::binary);
    if (!file)
        throw CMachOError(inPath + ": cannot be opened");
    return {std::istreambuf_iterator<char>(file), {}};
}

/** @return the part of the file that is for the processor. */
std::vector<std::uint8_t> ReadSliceOf(const std::string& inPath, std::uint32_t inProcessor)
{
    const std::vector<std::uint8_t> file = ReadFile(inPath);
    const SMachOSlices slices = ReadMachOSlices(inPath);
    if (!slices.mFault.empty())
        throw CMachOError(inPath + ": " + slices.mFault);
    const auto slice = std::ranges::find(slices.mSlices, inProcessor, &SMachOSlice::mProcessor);
    if (slice == slices.mSlices.end())
    {
        const std::string wanted = SMachOSlice{inProcessor}.ProcessorName();
        throw CMachOError(inPath + ": has no slice for " + wanted + "; it is for " + slices.ProcessorNames());
    }
    const auto bytes = CByteReader(file, slice->mOffset).ReadBytes(slice->mSize);
    return {bytes.begin(), bytes.end()};
}

std::string Hexadecimal(std::uint32_t inNumber)
{
    std::ostringstream text;
    text << "0x" << std::hex << inNumber;
    return text.str();
}

bool IsDefinedInASection(std::uint8_t inSymbolType)
{
    constexpr std::uint8_t kDebuggerMask = 0xE0;
    constexpr std::uint8_t kTypeMask = 0x0E;
    constexpr std::uint8_t kInSection = 0x0E;
    return (inSymbolType & kDebuggerMask) == 0 && (inSymbolType & kTypeMask) == kInSection;
}
} // namespace

CMachOFile::CMachOFile(const std::string& inPath, std::uint32_t inProcessor)
    : mPath(inPath), mBytes(ReadSliceOf(inPath, inProcessor))
{
    if (mBytes.size() < kHeaderSize || ReadAt<std::uint32_t>(mBytes, 0) != macho::kMagic64)
        throw CMachOError(inPath + ": not a 64-bit Mach-O file");
    ReadLoadCommands();
}

void CMachOFile::ReadLoadCommands()
{
    CByteReader header(mBytes, 12);
    mType = header.Read<std::uint32_t>();
    const auto count = header.Read<std::uint32_t>();
    header.Skip(sizeof(std::uint32_t));
    mFlags = header.Read<std::uint32_t>();

    std::size_t start = kHeaderSize;
    for (std::uint32_t i = 0; i < count; ++i)
    {
        const auto command = ReadAt<std::uint32_t>(mBytes, start);
        const auto size = ReadAt<std::uint32_t>(mBytes, start + 4);
        const auto bytes = Bytes(start, size);
        CByteReader reader(bytes, 8);
        ReadLoadCommand(command, reader, bytes);
        start += size;
    }
}

void CMachOFile::ReadLoadCommand(std::uint32_t inCommand, CByteReader& ioReader,
                                 std::span<const std::uint8_t> inBytes)
{
    switch (inCommand)
    {
    case macho::kSegment64: ReadSegment(ioReader); break;
    case macho::kBuildVersion: ReadBuildVersion(ioReader); break;
    case macho::kSymbolTable:
        mSymbolsOffset = ioReader.Read<std::uint32_t>();
        mSymbolCount = ioReader.Read<std::uint32_t>();
        mSymbolNames = ioReader.Read<SRange>();
        break;
    case macho::kDyldInfo:
    case macho::kDyldInfoOnly:
        for (SRange* range : {&mRebases, &mBindings, &mCoalescedBindings, &mLazyBindings, &mExports})
            *range = ioReader.Read<SRange>();
        break;
    case macho::kLoadDylib:
    case macho::kLoadWeakDylib:
    case macho::kReexportDylib:
    case macho::kLoadUpwardDylib:
        mLibraries.push_back(CByteReader(inBytes, ioReader.Read<std::uint32_t>()).ReadText());
        break;
    case macho::kCodeSignature: mSignature = ioReader.Read<SRange>(); break;
    case macho::kDynamicSymbolTable:
    case macho::kIdDylib:
    case macho::kUuid:
    case macho::kLinkerHints:
    case macho::kFunctionStarts:
    case macho::kDataInCode:
    case macho::kSourceVersion: break;
    case macho::kChainedFixups:
        throw CMachOError(mPath + ": has chained fixups; link it with -no_fixup_chains");
    default: throw CMachOError(mPath + ": unexpected load command " + Hexadecimal(inCommand));
    }
}

void CMachOFile::ReadSegment(CByteReader& ioReader)
{
    SMachOSegment segment;
    segment.mName = ioReader.ReadField(kNameFieldSize);
    segment.mAddress = ioReader.Read<std::uint64_t>();
    segment.mSize = (ioReader.Read<std::uint64_t>() + kPageSize - 1) / kPageSize * kPageSize;
    segment.mFileOffset = ioReader.Read<std::uint64_t>();
    segment.mFileSize = ioReader.Read<std::uint64_t>();
    ioReader.Skip(sizeof(std::uint32_t)); // the highest protection allowed
    segment.mProtection = ioReader.Read<std::uint32_t>();
    const auto sections = ioReader.Read<std::uint32_t>();
    ioReader.Skip(sizeof(std::uint32_t));
    if (segment.mFileSize > segment.mSize)
        throw CMachOError(mPath + ": segment " + segment.mName + " is larger in the file than in memory");
    mSegments.push_back(segment);

    for (std::uint32_t i = 0; i < sections; ++i)
    {
        SMachOSection section;
        section.mName = ioReader.ReadField(kNameFieldSize);
        ioReader.Skip(kNameFieldSize); // the segment's name
        section.mAddress = ioReader.Read<std::uint64_t>();
        section.mSize = ioReader.Read<std::uint64_t>();
        ioReader.Skip(4 * sizeof(std::uint32_t));
        section.mType = ioReader.Read<std::uint32_t>() & macho::kSectionTypeMask;
        ioReader.Skip(3 * sizeof(std::uint32_t));
        mSections.push_back(section);
    }
}

void CMachOFile::ReadBuildVersion(CByteReader& ioReader)
{
    if (ioReader.Read<std::uint32_t>() != macho::kPlatformMacOs)
        return;
    const auto version = ioReader.Read<std::uint32_t>(); // 16 bits, 8 bits and 8 bits
    mMinimumSystem = std::to_string(version >> 16) + "." + std::to_string((version >> 8) & 0xFF);
}

const SMachOSection* CMachOFile::FindSection(std::string_view inName) const
{
    const auto found = std::ranges::find(mSections, inName, &SMachOSection::mName);
    return found != mSections.end() ? &*found : nullptr;
}

std::span<const std::uint8_t> CMachOFile::SectionContent(std::string_view inName) const
{
    const SMachOSection* const section = FindSection(inName);
    if (section == nullptr)
        return {};
    for (const SMachOSegment& segment : mSegments)
    {
        const std::uint64_t start = section->mAddress - segment.mAddress; // beyond all where it is below
        if (start < segment.mFileSize && section->mSize <= segment.mFileSize - start)
            return Bytes(segment.mFileOffset + start, section->mSize);
    }
    return {};
}

std::span<const std::uint8_t> CMachOFile::Bytes(std::uint64_t inOffset, std::uint64_t inSize) const
{
    if (inOffset > mBytes.size() || inSize > mBytes.size() - inOffset)
        throw CMachOError(mPath + ": is cut short");
    return std::span(mBytes).subspan(inOffset, inSize);
}

std::span<const std::uint8_t> CMachOFile::Bytes(const SRange& inRange) const
{
    return Bytes(inRange.mOffset, inRange.mSize);
}

std::span<const std::uint8_t> CMachOFile::Content(const SMachOSegment& inSegment) const
{
    return Bytes(inSegment.mFileOffset, inSegment.mFileSize);
}

std::uint64_t CMachOFile::LowestAddress() const
{
    return std::ranges::min(mSegments, {}, &SMachOSegment::mAddress).mAddress;
}

std::uint64_t CMachOFile::MemorySize() const
{
    const SMachOSegment& last = std::ranges::max(mSegments, {}, &SMachOSegment::mAddress);
    return last.mAddress + last.mSize - LowestAddress();
}

std::vector<SMachOSymbol> CMachOFile::Symbols() const
{
    const auto names = Bytes(mSymbolNames);
    std::vector<SMachOSymbol> symbols;
    CByteReader reader(mBytes, mSymbolsOffset);
    for (std::uint32_t i = 0; i < mSymbolCount; ++i)
    {
        const auto name = reader.Read<std::uint32_t>();
        const auto type = reader.Read<std::uint8_t>();
        reader.Skip(3);
        const auto address = reader.Read<std::uint64_t>();
        if (IsDefinedInASection(type))
            symbols.push_back({address, CByteReader(names, name).ReadText()});
    }
    std::ranges::sort(symbols, {}, &SMachOSymbol::mAddress);
    return symbols;
}

std::map<std::string, std::uint64_t, std::less<>> CMachOFile::Exports() const
{
    std::map<std::string, std::uint64_t, std::less<>> exports;
    if (mExports.mSize != 0)
        ReadExportNode(0, "", exports);
    return exports;
}

// The exports are a tree: a name is spelled by the edges that lead to its node.
void CMachOFile::ReadExportNode(std::size_t inNode, const std::string& inName,
                                std::map<std::string, std::uint64_t, std::less<>>& outExports) const
{
    const auto tree = Bytes(mExports);
    CByteReader reader(tree, inNode);
    const std::uint64_t symbolSize = reader.ReadUleb();
    const std::size_t children = reader.Offset() + symbolSize;
    if (symbolSize != 0)
    {
        const bool isElsewhere = (reader.ReadUleb() & macho::kExportElsewhere) != 0;
        if (!isElsewhere)
            outExports[inName] = reader.ReadUleb();
    }
    reader.Seek(children);
    const auto count = reader.Read<std::uint8_t>();
    for (unsigned i = 0; i < count; ++i)
    {
        const std::string edge = reader.ReadText();
        const std::uint64_t child = reader.ReadUleb();
        if (child <= inNode)
            throw CMachOError(mPath + ": the tree of exports leads back");
        ReadExportNode(child, inName + edge, outExports);
    }
}
