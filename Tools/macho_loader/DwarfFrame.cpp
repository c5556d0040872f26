#include "Tools/macho_loader/DwarfFrame.h"

#include "Tools/macho_loader/CByteReader.h"

#include <cstring>
#include <string>

namespace
{
// How a pointer is written.
constexpr std::uint8_t kOmitted = 0xFF;
constexpr std::uint8_t kIndirect = 0x80;
constexpr std::uint8_t kRelationMask = 0x70;
constexpr std::uint8_t kRelativeToItsPlace = 0x10;
constexpr std::uint8_t kFormatMask = 0x0F;
constexpr std::uint8_t kFormatSigned4 = 0x0B;
constexpr std::uint8_t kFormatUnsigned4 = 0x03;

bool IsFourBytes(std::uint8_t inEncoding)
{
    const std::uint8_t format = inEncoding & kFormatMask;
    return format == kFormatSigned4 || format == kFormatUnsigned4;
}

/** @return the address meant; 0 for none. */
std::uint64_t ReadPointer(CByteReader& ioReader, std::uint8_t inEncoding)
{
    if (inEncoding == kOmitted)
        return 0;
    if ((inEncoding & kRelationMask) != kRelativeToItsPlace)
        throw CMachOError("unexpected pointers in the frame table");
    const std::uint8_t* const place = ioReader.Position();
    const std::int64_t distance =
        IsFourBytes(inEncoding) ? ioReader.Read<std::int32_t>() : ioReader.Read<std::int64_t>();
    if (distance == 0)
        return 0;
    auto address = reinterpret_cast<std::uint64_t>(place + distance);
    if ((inEncoding & kIndirect) != 0)
        std::memcpy(&address, place + distance, sizeof(address));
    return address;
}

/** The bytes of the entry at an offset, without its length. */
std::span<const std::uint8_t> Entry(std::span<const std::uint8_t> inSection, std::size_t inOffset)
{
    CByteReader reader(inSection, inOffset);
    const auto length = reader.Read<std::uint32_t>();
    return reader.ReadBytes(length);
}

/** What the functions of one kind share. */
struct SCommonPart
{
    bool mIsAugmented = false;
    std::uint8_t mCodeEncoding = 0;
    std::uint8_t mLanguageDataEncoding = kOmitted;
    std::uint64_t mPersonality = 0;
    ByteVector mInstructions;
};

void ReadAugmentation(CByteReader& ioReader, const std::string& inLetters, SCommonPart& outCommon)
{
    for (const char letter : inLetters)
    {
        const auto encoding = ioReader.Read<std::uint8_t>();
        switch (letter)
        {
        case 'R': outCommon.mCodeEncoding = encoding; break;
        case 'L': outCommon.mLanguageDataEncoding = encoding; break;
        case 'P': outCommon.mPersonality = ReadPointer(ioReader, encoding); break;
        default: throw CMachOError("unexpected augmentation in the frame table");
        }
    }
}

SCommonPart ReadCommonPart(std::span<const std::uint8_t> inEntry)
{
    CByteReader reader(inEntry, 5); // identifier and version
    const std::string augmentation = reader.ReadText();
    if (reader.ReadUleb() != 1 || reader.ReadSleb() != -8 || reader.ReadUleb() != 16)
        throw CMachOError("unexpected units in the frame table");
    SCommonPart common;
    common.mIsAugmented = augmentation.starts_with('z');
    if (common.mIsAugmented)
    {
        CByteReader data(reader.ReadBytes(reader.ReadUleb()));
        ReadAugmentation(data, augmentation.substr(1), common);
    }
    const auto instructions = inEntry.subspan(reader.Offset());
    common.mInstructions.assign(instructions.begin(), instructions.end());
    return common;
}
} // namespace

SUnwindFunction ReadDwarfFrame(std::span<const std::uint8_t> inSection, std::uint32_t inOffset)
{
    const auto entry = Entry(inSection, inOffset);
    CByteReader reader(entry);
    const auto distance = reader.Read<std::uint32_t>(); // back to the common part
    if (distance > inOffset + kLengthSize)
        throw CMachOError("a frame entry refers to nothing");
    const SCommonPart common = ReadCommonPart(Entry(inSection, inOffset + kLengthSize - distance));

    SUnwindFunction function;
    function.mPersonality = common.mPersonality;
    function.mCommonInstructions = common.mInstructions;
    function.mCode = ReadPointer(reader, common.mCodeEncoding);
    function.mSize =
        IsFourBytes(common.mCodeEncoding) ? reader.Read<std::uint32_t>() : reader.Read<std::uint64_t>();
    if (common.mIsAugmented)
    {
        CByteReader data(reader.ReadBytes(reader.ReadUleb()));
        function.mLanguageData = ReadPointer(data, common.mLanguageDataEncoding);
    }
    const auto instructions = entry.subspan(reader.Offset());
    function.mInstructions.assign(instructions.begin(), instructions.end());
    return function;
}
