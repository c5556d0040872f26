#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/CopyBounded.h"
#include "Source/plugins/FileBytes.h"
#include "Source/plugins/PresetRecord.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace
{
constexpr long kMagicSize = 4;
constexpr long kChunkSizeSize = 4;
/** What the byte size of a record leaves out. Other programs leave out 8; readers take both. */
constexpr long kNotCounted = 16;

/** What a size field holds. */
constexpr long kMaxRecordSize = std::numeric_limits<std::int32_t>::max();

char* WriteMagic(char* outRecord, const char* inMagic)
{
    std::memcpy(outRecord, inMagic, kMagicSize);
    return outRecord + kMagicSize;
}

/** A record with room for its header ahead of the chunk; empty when its size would not fit its field. */
std::vector<std::byte> RecordOfChunk(long inHeaderSize, const void* inChunk, long inSize)
{
    if (inSize > kMaxRecordSize - inHeaderSize)
        return {};
    // Copied: the plug-in's memory is only good until its next chunk call, and the header asks it for texts.
    const auto* const chunk = static_cast<const std::byte*>(inChunk);
    std::vector<std::byte> record(static_cast<std::size_t>(inHeaderSize));
    record.insert(record.end(), chunk, chunk + inSize);
    return record;
}

char* Bytes(std::vector<std::byte>& ioRecord, std::size_t inOffset = 0)
{
    return reinterpret_cast<char*>(ioRecord.data() + inOffset);
}
} // namespace

char* CVst2Plugin::WriteNumber(char* outRecord, long inValue) const
{
    const auto swapped = static_cast<std::int32_t>(Swap(inValue));
    std::memcpy(outRecord, &swapped, sizeof(swapped));
    return outRecord + sizeof(swapped);
}

char* CVst2Plugin::WriteRecordStart(char* outRecord, const char* inMagic, long inFormatVersion,
                                    long inTotalSize) const
{
    char* field = WriteMagic(outRecord, kRecordMagic);
    field = WriteNumber(field, inTotalSize - kNotCounted);
    field = WriteMagic(field, inMagic);
    field = WriteNumber(field, inFormatVersion);
    field = WriteNumber(field, mUniqueId);
    return WriteNumber(field, mVersion);
}

long CVst2Plugin::GetPresetHeaderSize() const
{
    return GotChunk() ? kProgramHeaderSize + kChunkSizeSize : kProgramHeaderSize;
}

long CVst2Plugin::GetBankHeaderSize() const
{
    return GotChunk() ? kBankHeaderSize + kChunkSizeSize : kBankHeaderSize;
}

long CVst2Plugin::GetPresetSize()
{
    long size = 0;
    if (GotChunk())
        (void)GetState(size); // the size is looked at
    else
        size = std::max(GetNumParameters(), 0L) * static_cast<long>(sizeof(float));
    return GetPresetHeaderSize() + size;
}

long CVst2Plugin::GetBankSize()
{
    return GetBankHeaderSize() +
           (GotChunk() ? GetChunkSize() : std::max(GetNumPrograms(), 0L) * GetPresetSize());
}

char* CVst2Plugin::WritePresetHeader(char* outRecord, long inTotalSize)
{
    return WritePresetHeader(outRecord, inTotalSize, GotChunk(), GetNumParameters());
}

char* CVst2Plugin::WritePresetHeader(char* outRecord, long inTotalSize, bool inHasChunk, long inParameters)
{
    char* field = WriteRecordStart(outRecord, inHasChunk ? kProgramChunkMagic : kProgramValuesMagic,
                                   kProgramFormatVersion, inTotalSize);
    field = WriteNumber(field, inParameters);
    CopyBounded(std::span(field, kRecordNameSize), GetProgramNameByIndex(GetProgram()));
    field += kRecordNameSize;
    return inHasChunk ? WriteNumber(field, inTotalSize - kProgramHeaderSize - kChunkSizeSize) : field;
}

char* CVst2Plugin::WriteBankHeader(char* outRecord, long inTotalSize)
{
    return WriteBankHeader(outRecord, inTotalSize, GotChunk(), GetNumPrograms(), GetProgram());
}

char* CVst2Plugin::WriteBankHeader(char* outRecord, long inTotalSize, bool inHasChunk, long inPrograms,
                                   long inCurrentProgram) const
{
    char* field = WriteRecordStart(outRecord, inHasChunk ? kBankChunkMagic : kBankValuesMagic,
                                   kBankFormatVersion, inTotalSize);
    field = WriteNumber(field, inPrograms);
    field = WriteNumber(field, inCurrentProgram);
    field = std::fill_n(field, outRecord + kBankHeaderSize - field, '\0');
    return inHasChunk ? WriteNumber(field, inTotalSize - kBankHeaderSize - kChunkSizeSize) : field;
}

bool CVst2Plugin::AddProgramValues(std::vector<std::byte>& ioRecords)
{
    const auto start = static_cast<long>(ioRecords.size());
    // Taken once: a plug-in may have other parameters after any of the calls below.
    const long count = std::max(GetNumParameters(), 0L);
    const long size = kProgramHeaderSize + count * static_cast<long>(sizeof(float));
    if (size > kMaxRecordSize - start)
        return false;
    ioRecords.resize(static_cast<std::size_t>(start + size));
    char* content = WritePresetHeader(Bytes(ioRecords, static_cast<std::size_t>(start)), size, false, count);
    for (long i = 0; i < count; ++i)
    {
        const float value = Swap(i < GetNumParameters() ? GetParameter(i) : 0.0F);
        std::memcpy(content, &value, sizeof(value));
        content += sizeof(value);
    }
    return true;
}

bool CVst2Plugin::SavePreset(const char* inPath)
{
    if (mEffect == nullptr)
        return false;
    std::vector<std::byte> record;
    if (!GotChunk())
        return AddProgramValues(record) && WriteFileBytes(inPath, record);
    long size = 0;
    const void* const chunk = GetState(size);
    record = RecordOfChunk(kProgramHeaderSize + kChunkSizeSize, chunk, size);
    if (record.empty())
        return false;
    (void)WritePresetHeader(Bytes(record), static_cast<long>(record.size()), true,
                            std::max(GetNumParameters(), 0L)); // the chunk is behind it already
    return WriteFileBytes(inPath, record);
}

bool CVst2Plugin::WriteBank(const char* inPath)
{
    if (mEffect == nullptr)
        return false;
    std::vector<std::byte> record;
    if (!GotChunk())
        return AddProgramsBank(record) && WriteFileBytes(inPath, record);
    const void* const chunk = GetChunk();
    record = RecordOfChunk(kBankHeaderSize + kChunkSizeSize, chunk, mChunkSize);
    if (record.empty())
        return false;
    (void)WriteBankHeader(Bytes(record), static_cast<long>(record.size()), true,
                          std::max(GetNumPrograms(), 0L), GetProgram()); // as above
    return WriteFileBytes(inPath, record);
}

bool CVst2Plugin::AddProgramsBank(std::vector<std::byte>& ioRecords)
{
    const long count = std::max(GetNumPrograms(), 0L); // once, as the parameters
    const long current = GetProgram();
    ioRecords.resize(static_cast<std::size_t>(kBankHeaderSize));
    bool fits = true;
    for (long program = 0; fits && program < count; ++program)
    {
        SetProgram(program); // a plug-in tells the values of its current program only
        fits = AddProgramValues(ioRecords);
    }
    SetProgram(current);
    (void)WriteBankHeader(Bytes(ioRecords), static_cast<long>(ioRecords.size()), false, count,
                          current); // the programs are behind it already
    return fits;
}

bool CVst2Plugin::IsOwnRecord(const std::optional<SPresetRecord>& inRecord) const
{
    return inRecord.has_value() && inRecord->mUniqueId == mUniqueId && inRecord->mHasChunk == GotChunk();
}

std::optional<SPresetRecord> CVst2Plugin::ReadPresetHeader(std::span<const std::byte> inRecord) const
{
    std::optional<SPresetRecord> record = ReadProgramRecord(inRecord);
    return IsOwnRecord(record) ? record : std::nullopt;
}

std::optional<SPresetRecord> CVst2Plugin::ReadBankHeader(std::span<const std::byte> inRecord) const
{
    std::optional<SPresetRecord> record = ReadBankRecord(inRecord);
    return IsOwnRecord(record) ? record : std::nullopt;
}

bool CVst2Plugin::ReadPreset(const char* inPath)
{
    const std::optional<std::vector<std::byte>> bytes = ReadFileBytes(inPath);
    if (mEffect == nullptr || !bytes.has_value())
        return false;
    std::optional<SPresetRecord> record = ReadPresetHeader(*bytes);
    if (!record.has_value())
        return false;
    ApplyProgram(*record);
    return true;
}

bool CVst2Plugin::ReadBank(const char* inPath)
{
    const std::optional<std::vector<std::byte>> bytes = ReadFileBytes(inPath);
    if (mEffect == nullptr || !bytes.has_value())
        return false;
    std::optional<SPresetRecord> bank = ReadBankHeader(*bytes);
    if (!bank.has_value())
        return false;
    if (bank->mHasChunk)
    {
        std::vector<std::byte> chunk(bank->mContent.begin(),
                                     bank->mContent.end()); // plug-ins get memory they may write
        SetChunk(chunk.data(), static_cast<long>(chunk.size()));
        return true;
    }
    // All are read before the first is applied: a broken one leaves the plug-in as it was.
    std::vector<SPresetRecord> programs;
    std::span<const std::byte> rest = bank->mContent;
    for (std::int32_t i = 0; i < bank->mCount; ++i)
    {
        const std::size_t size = ProgramRecordSize(rest);
        std::optional<SPresetRecord> program =
            size != 0 && size <= rest.size() ? ReadPresetHeader(rest.first(size)) : std::nullopt;
        if (!program.has_value())
            return false;
        programs.push_back(*program);
        rest = rest.subspan(size);
    }
    if (!rest.empty())
        return false;
    ApplyBank(programs, bank->mCurrentProgram.value_or(GetProgram()));
    return true;
}

void CVst2Plugin::ApplyBank(std::span<SPresetRecord> inPrograms, long inCurrentProgram)
{
    const long count = std::min(static_cast<long>(inPrograms.size()), GetNumPrograms());
    for (long i = 0; i < count; ++i)
    {
        SetProgram(i);
        ApplyProgram(inPrograms[static_cast<std::size_t>(i)]);
    }
    if (inCurrentProgram >= 0 && inCurrentProgram < GetNumPrograms())
        SetProgram(inCurrentProgram);
}

void CVst2Plugin::ApplyProgram(SPresetRecord& ioProgram)
{
    if (ioProgram.mHasChunk)
    {
        std::vector<std::byte> chunk(ioProgram.mContent.begin(), ioProgram.mContent.end()); // as above
        SetState(chunk.data(), static_cast<long>(chunk.size()));
    }
    else
    {
        // Another version of the plug-in may have had more parameters.
        for (long i = 0; i < std::min<long>(ioProgram.mCount, GetNumParameters()); ++i)
            SetParameter(i, ParameterValue(ioProgram, static_cast<std::size_t>(i)));
    }
    if (ioProgram.mName.front() != '\0')
        (void)Dispatch(effSetProgramName, 0, 0, ioProgram.mName.data()); // a plug-in may keep its own
}
