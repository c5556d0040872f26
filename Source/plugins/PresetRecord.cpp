#include "Source/plugins/PresetRecord.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace
{
// Offsets that both kinds of record share.
constexpr std::size_t kByteSizeAt = 4;
constexpr std::size_t kKindAt = 8;
constexpr std::size_t kFormatVersionAt = 12;
constexpr std::size_t kUniqueIdAt = 16;
constexpr std::size_t kVersionAt = 20;
constexpr std::size_t kCountAt = 24;
// What follows the count: a program's name, a bank's current program.
constexpr std::size_t kNameAt = 28;
constexpr std::size_t kCurrentProgramAt = 28;

/** What tells a program record from a bank record. */
struct SKind
{
    const char* mValuesMagic;
    const char* mChunkMagic;
    std::int32_t mOldestFormatVersion;
    std::int32_t mFormatVersion;
    std::size_t mHeaderSize;
};
constexpr SKind kProgram{kProgramValuesMagic, kProgramChunkMagic, kProgramFormatVersion,
                         kProgramFormatVersion, kProgramHeaderSize};
constexpr SKind kBank{kBankValuesMagic, kBankChunkMagic, kOldBankFormatVersion, kBankFormatVersion,
                      kBankHeaderSize};

/** The four bytes at an offset, most significant first. The caller has checked the size. */
std::uint32_t BigEndian(std::span<const std::byte> inBytes, std::size_t inOffset)
{
    std::uint32_t value = 0;
    for (const std::byte byte : inBytes.subspan(inOffset, 4))
        value = value << 8 | std::to_integer<std::uint32_t>(byte);
    return value;
}

std::int32_t SignedBigEndian(std::span<const std::byte> inBytes, std::size_t inOffset)
{
    return static_cast<std::int32_t>(BigEndian(inBytes, inOffset));
}

bool HasMagic(std::span<const std::byte> inBytes, std::size_t inOffset, const char* inMagic)
{
    return std::memcmp(inBytes.data() + inOffset, inMagic, 4) == 0;
}

bool HasFormatVersion(std::span<const std::byte> inBytes, const SKind& inKind)
{
    const std::int32_t version = SignedBigEndian(inBytes, kFormatVersionAt);
    return version >= inKind.mOldestFormatVersion && version <= inKind.mFormatVersion;
}

bool HasHeader(std::span<const std::byte> inBytes, const SKind& inKind)
{
    return inBytes.size() >= inKind.mHeaderSize && HasMagic(inBytes, 0, kRecordMagic) &&
           (HasMagic(inBytes, kKindAt, inKind.mValuesMagic) ||
            HasMagic(inBytes, kKindAt, inKind.mChunkMagic)) &&
           HasFormatVersion(inBytes, inKind) && SignedBigEndian(inBytes, kCountAt) >= 0;
}

bool HasByteSize(std::span<const std::byte> inBytes)
{
    const std::uint64_t byteSize = BigEndian(inBytes, kByteSizeAt);
    return byteSize + 16 == inBytes.size() || byteSize + 8 == inBytes.size();
}

std::optional<SPresetRecord> ReadRecord(std::span<const std::byte> inBytes, const SKind& inKind)
{
    if (!HasHeader(inBytes, inKind) || !HasByteSize(inBytes))
        return std::nullopt;
    SPresetRecord record;
    record.mHasChunk = HasMagic(inBytes, kKindAt, inKind.mChunkMagic);
    record.mUniqueId = SignedBigEndian(inBytes, kUniqueIdAt);
    record.mVersion = SignedBigEndian(inBytes, kVersionAt);
    record.mCount = SignedBigEndian(inBytes, kCountAt);
    record.mContent = inBytes.subspan(inKind.mHeaderSize);
    if (record.mHasChunk)
    {
        if (record.mContent.size() < 4 || BigEndian(record.mContent, 0) != record.mContent.size() - 4)
            return std::nullopt;
        record.mContent = record.mContent.subspan(4);
    }
    return record;
}
} // namespace

std::optional<SPresetRecord> ReadProgramRecord(std::span<const std::byte> inBytes)
{
    std::optional<SPresetRecord> record = ReadRecord(inBytes, kProgram);
    if (!record.has_value())
        return std::nullopt;
    if (!record->mHasChunk &&
        record->mContent.size() != static_cast<std::size_t>(record->mCount) * sizeof(float))
        return std::nullopt;
    std::memcpy(record->mName.data(), inBytes.data() + kNameAt, record->mName.size());
    record->mName.back() = '\0';
    return record;
}

std::optional<SPresetRecord> ReadBankRecord(std::span<const std::byte> inBytes)
{
    std::optional<SPresetRecord> record = ReadRecord(inBytes, kBank);
    if (!record.has_value() || SignedBigEndian(inBytes, kFormatVersionAt) == kOldBankFormatVersion)
        return record;
    const std::int32_t current = SignedBigEndian(inBytes, kCurrentProgramAt);
    if (current >= 0 && current < record->mCount)
        record->mCurrentProgram = current;
    return record;
}

std::size_t ProgramRecordSize(std::span<const std::byte> inBytes)
{
    if (!HasHeader(inBytes, kProgram))
        return 0;
    const bool hasChunk = HasMagic(inBytes, kKindAt, kProgramChunkMagic);
    if (!hasChunk)
        return kProgram.mHeaderSize + BigEndian(inBytes, kCountAt) * sizeof(float);
    return inBytes.size() < kProgram.mHeaderSize + 4
               ? 0
               : kProgram.mHeaderSize + 4 + BigEndian(inBytes, kProgram.mHeaderSize);
}

float ParameterValue(const SPresetRecord& inRecord, std::size_t inIndex)
{
    return std::bit_cast<float>(BigEndian(inRecord.mContent, inIndex * sizeof(float)));
}
