#pragma once
#include "Tools/macho_slices/MachOSlices.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class CByteReader;

struct SMachOSegment
{
    std::string mName;
    std::uint64_t mAddress = 0;
    std::uint64_t mSize = 0; // in memory
    std::uint64_t mFileOffset = 0;
    std::uint64_t mFileSize = 0;
    std::uint32_t mProtection = 0; // EProtection
};

struct SMachOSection
{
    std::string mName;
    std::uint64_t mAddress = 0;
    std::uint64_t mSize = 0;
    std::uint32_t mType = 0; // ESectionType
};

struct SMachOSymbol
{
    std::uint64_t mAddress = 0;
    std::string mName;
};

/** A pointer in the image that is to hold the address of another library's symbol. */
struct SMachOBinding
{
    std::uint64_t mAddress = 0;
    std::string mSymbol;
    std::int64_t mLibraryOrdinal = 0; // counts from 1 among the libraries; 0: the image itself; below: any
    std::int64_t mAddend = 0;
    bool mMayBeMissing = false;
    bool mIsCoalesced = false; // one definition for the whole process, the image's own where it has one
};

/**
 * What a 64-bit Mach-O file, or the slice for one processor of a universal one, says of itself. Names are the
 * linker's, with the underscore in front.
 *
 * Every operation may throw CMachOError for a file that is cut short or uses what the loader doesn't know.
 */
class CMachOFile
{
public:
    explicit CMachOFile(const std::string& inPath, std::uint32_t inProcessor = kMachOProcessorX86_64);

    const std::string& Path() const { return mPath; }
    std::uint32_t Type() const { return mType; }
    std::uint32_t Flags() const { return mFlags; }
    /** The oldest system that runs it, like "11.0"; empty when it is for another system than macOS. */
    const std::string& MinimumSystem() const { return mMinimumSystem; }
    /** Install names in the order that bindings count them. */
    const std::vector<std::string>& Libraries() const { return mLibraries; }
    const std::vector<SMachOSegment>& Segments() const { return mSegments; }
    const std::vector<SMachOSection>& Sections() const { return mSections; }
    /** @return null when there is none. */
    const SMachOSection* FindSection(std::string_view inName) const;
    /** Bytes of the file; empty where there is no such section or nothing of it is in the file. */
    std::span<const std::uint8_t> SectionContent(std::string_view inName) const;
    /** The signature in the file, and where it starts; empty where the file is not signed. */
    std::span<const std::uint8_t> Signature() const { return Bytes(mSignature); }
    std::uint32_t SignatureOffset() const { return mSignature.mOffset; }
    std::span<const std::uint8_t> Content(const SMachOSegment& inSegment) const;
    /** The lowest address of a segment: where the header is in memory. */
    std::uint64_t LowestAddress() const;
    std::uint64_t MemorySize() const;

    /** Functions and data that the file defines, lowest address first. */
    std::vector<SMachOSymbol> Symbols() const;
    /** By name, the offset from the header in memory. */
    std::map<std::string, std::uint64_t, std::less<>> Exports() const;
    /** The addresses of pointers into the image itself. */
    std::vector<std::uint64_t> Rebases() const;
    std::vector<SMachOBinding> Bindings() const;

private:
    struct SRange
    {
        std::uint32_t mOffset = 0;
        std::uint32_t mSize = 0;
    };
    enum class EBindKind
    {
        kRegular,
        kCoalesced,
        kLazy
    };

    void ReadLoadCommands();
    void ReadLoadCommand(std::uint32_t inCommand, CByteReader& ioReader,
                         std::span<const std::uint8_t> inBytes);
    void ReadSegment(CByteReader& ioReader);
    void ReadBuildVersion(CByteReader& ioReader);
    std::span<const std::uint8_t> Bytes(std::uint64_t inOffset, std::uint64_t inSize) const;
    std::span<const std::uint8_t> Bytes(const SRange& inRange) const;
    std::uint64_t SegmentAddress(std::size_t inSegment) const;
    void ReadExportNode(std::size_t inNode, const std::string& inName,
                        std::map<std::string, std::uint64_t, std::less<>>& outExports) const;
    void ReadBindings(const SRange& inRange, EBindKind inKind, std::vector<SMachOBinding>& outBindings) const;

    std::string mPath;
    std::vector<std::uint8_t> mBytes;
    std::uint32_t mType = 0;
    std::uint32_t mFlags = 0;
    std::string mMinimumSystem;
    std::vector<std::string> mLibraries;
    std::vector<SMachOSegment> mSegments;
    std::vector<SMachOSection> mSections;
    std::uint32_t mSymbolsOffset = 0;
    std::uint32_t mSymbolCount = 0;
    SRange mSymbolNames;
    SRange mRebases;
    SRange mBindings;
    SRange mCoalescedBindings;
    SRange mLazyBindings;
    SRange mExports;
    SRange mSignature;
};
