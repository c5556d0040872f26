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
/** What the byte size of a record leaves out. Other programs leave out 8; readers take both. */
constexpr long kNotCounted = 16;

char* WriteMagic(char* outRecord, const char* inMagic)
{
    std::memcpy(outRecord, inMagic, kMagicSize);
    return outRecord + kMagicSize;
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
    return GotChunk() ? kProgramHeaderSize + 4 : kProgramHeaderSize;
}

long CVst2Plugin::GetBankHeaderSize() const { return GotChunk() ? kBankHeaderSize + 4 : kBankHeaderSize; }

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
    const bool hasChunk = GotChunk();
    char* field = WriteRecordStart(outRecord, hasChunk ? kProgramChunkMagic : kProgramValuesMagic,
                                   kProgramFormatVersion, inTotalSize);
    field = WriteNumber(field, GetNumParameters());
    CopyBounded(std::span(field, kRecordNameSize), GetProgramNameByIndex(GetProgram()));
    field += kRecordNameSize;
    return hasChunk ? WriteNumber(field, inTotalSize - GetPresetHeaderSize()) : field;
}

char* CVst2Plugin::WriteBankHeader(char* outRecord, long inTotalSize)
{
    const bool hasChunk = GotChunk();
    char* field = WriteRecordStart(outRecord, hasChunk ? kBankChunkMagic : kBankValuesMagic,
                                   kBankFormatVersion, inTotalSize);
    field = WriteNumber(field, GetNumPrograms());
    field = WriteNumber(field, GetProgram());
    field = std::fill_n(field, outRecord + kBankHeaderSize - field, '\0');
    return hasChunk ? WriteNumber(field, inTotalSize - GetBankHeaderSize()) : field;
}

char* CVst2Plugin::WriteProgramValues(char* outRecord)
{
    char* content = WritePresetHeader(outRecord, GetPresetSize());
    for (long i = 0; i < GetNumParameters(); ++i)
    {
        const float value = Swap(GetParameter(i));
        std::memcpy(content, &value, sizeof(value));
        content += sizeof(value);
    }
    return content;
}

bool CVst2Plugin::SavePreset(const char* inPath)
{
    if (mEffect == nullptr)
        return false;
    if (!GotChunk())
    {
        std::vector<std::byte> values(static_cast<std::size_t>(GetPresetSize()));
        (void)WriteProgramValues(reinterpret_cast<char*>(values.data())); // fills it to the end
        return WriteFileBytes(inPath, values);
    }
    long size = 0;
    const auto* const chunk = static_cast<const std::byte*>(GetState(size));
    return WriteChunkRecord(inPath, GetPresetHeaderSize(), {chunk, static_cast<std::size_t>(size)},
                            &CVst2Plugin::WritePresetHeader);
}

bool CVst2Plugin::WriteBank(const char* inPath)
{
    if (mEffect == nullptr)
        return false;
    if (!GotChunk())
        return WriteProgramsBank(inPath);
    const auto* const chunk = static_cast<const std::byte*>(GetChunk());
    return WriteChunkRecord(inPath, GetBankHeaderSize(), {chunk, static_cast<std::size_t>(mChunkSize)},
                            &CVst2Plugin::WriteBankHeader);
}

bool CVst2Plugin::WriteChunkRecord(const char* inPath, long inHeaderSize, std::span<const std::byte> inChunk,
                                   char* (CVst2Plugin::*inWriteHeader)(char*, long))
{
    if (inChunk.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max() - inHeaderSize))
        return false; // the size would not fit its field
    // Copied first: the plug-in's memory is only good until its next chunk call, and the header asks it for
    // texts.
    std::vector<std::byte> record(static_cast<std::size_t>(inHeaderSize));
    record.insert(record.end(), inChunk.begin(), inChunk.end());
    (void)(this->*inWriteHeader)(reinterpret_cast<char*>(record.data()), static_cast<long>(record.size()));
    return WriteFileBytes(inPath, record);
}

bool CVst2Plugin::WriteProgramsBank(const char* inPath)
{
    std::vector<std::byte> bank(static_cast<std::size_t>(GetBankSize()));
    char* content = WriteBankHeader(reinterpret_cast<char*>(bank.data()), static_cast<long>(bank.size()));
    const long current = GetProgram();
    for (long program = 0; program < GetNumPrograms(); ++program)
    {
        SetProgram(program); // a plug-in tells the values of its current program only
        content = WriteProgramValues(content);
    }
    SetProgram(current);
    return WriteFileBytes(inPath, bank);
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
    ApplyBank(programs, bank->mCurrentProgram);
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
    if (inCurrentProgram >= 0 && inCurrentProgram < count)
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
        const long count = std::min<long>(ioProgram.mCount, GetNumParameters());
        for (long i = 0; i < count; ++i)
            SetParameter(i, ParameterValue(ioProgram, static_cast<std::size_t>(i)));
    }
    if (ioProgram.mName.front() != '\0')
        (void)Dispatch(effSetProgramName, 0, 0, ioProgram.mName.data()); // a plug-in may keep its own
}
