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
    return inMemory.At(section->address, section->size);
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
        if ((entry.encoding & kUnwindModeMask) == kUnwindDwarf)
        {
            writer.Add(ReadDwarfFrame(dwarf, entry.encoding & kUnwindDwarfOffsetMask));
            continue;
        }
        SUnwindFunction function;
        function.code = base + entry.function;
        function.size = entry.size;
        function.instructions = FrameInstructions(entry.encoding, image.subspan(entry.function));
        if (entry.personalitySlot != 0)
            function.personality = ReadAt<std::uint64_t>(image, entry.personalitySlot);
        if (entry.languageData != 0)
            function.languageData = base + entry.languageData;
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
