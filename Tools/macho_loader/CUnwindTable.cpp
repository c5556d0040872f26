#include "Tools/macho_loader/CUnwindTable.h"

#include "Tools/macho_loader/CByteReader.h"
#include "Tools/macho_loader/CEhFrameWriter.h"
#include "Tools/macho_loader/CImageMemory.h"
#include "Tools/macho_loader/CMachOFile.h"
#include "Tools/macho_loader/CompactUnwind.h"
#include "Tools/macho_loader/DwarfFrame.h"
#include "Tools/macho_loader/UnwindInfo.h"

// Of the compiler's runtime library.
extern "C" void __register_frame(void* inTable);
extern "C" void __deregister_frame(void* inTable);

namespace
{
std::span<const std::uint8_t> SectionBytes(const CMachOFile& inFile, const CImageMemory& inMemory,
                                           std::string_view inName)
{
    const SMachOSection* const section = inFile.FindSection(inName);
    if (section == nullptr)
        return {};
    return inMemory.At(section->mAddress, section->mSize);
}
} // namespace

CUnwindTable::CUnwindTable(const CMachOFile& inFile, const CImageMemory& inMemory)
{
    const auto compact = SectionBytes(inFile, inMemory, "__unwind_info");
    if (compact.empty())
        return;
    const auto dwarf = SectionBytes(inFile, inMemory, "__eh_frame");
    const std::span<const std::uint8_t> image(inMemory.Base(), inMemory.Size());
    const auto base = reinterpret_cast<std::uint64_t>(inMemory.Base());

    CEhFrameWriter writer;
    for (const SUnwindEntry& entry : ReadUnwindInfo(compact))
    {
        if ((entry.mEncoding & kUnwindModeMask) == kUnwindDwarf)
        {
            writer.Add(ReadDwarfFrame(dwarf, entry.mEncoding & kUnwindDwarfOffsetMask));
            continue;
        }
        SUnwindFunction function;
        function.mCode = base + entry.mFunction;
        function.mSize = entry.mSize;
        function.mInstructions = FrameInstructions(entry.mEncoding, image.subspan(entry.mFunction));
        if (entry.mPersonalitySlot != 0)
            function.mPersonality = ReadAt<std::uint64_t>(image, entry.mPersonalitySlot);
        if (entry.mLanguageData != 0)
            function.mLanguageData = base + entry.mLanguageData;
        writer.Add(function);
    }
    mTable = writer.Take();
    __register_frame(mTable.data()); // an empty table is one too
}

CUnwindTable::~CUnwindTable()
{
    if (!mTable.empty())
        __deregister_frame(mTable.data());
}
