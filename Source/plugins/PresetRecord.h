#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

/** Bytes ahead of the parameter values of a program record; a chunk's size takes four more. */
inline constexpr long kProgramHeaderSize = 56;
/** Bytes ahead of the program records of a bank record; a chunk's size takes four more. */
inline constexpr long kBankHeaderSize = 156;
/** Bytes of a program's name in its record, terminator included. */
inline constexpr std::size_t kRecordNameSize = 28;

/** The four characters that begin a record and tell its kind. */
inline constexpr const char* kRecordMagic = "CcnK";
inline constexpr const char* kProgramValuesMagic = "FxCk";
inline constexpr const char* kProgramChunkMagic = "FPCh";
inline constexpr const char* kBankValuesMagic = "FxBk";
inline constexpr const char* kBankChunkMagic = "FBCh";

inline constexpr std::int32_t kProgramFormatVersion = 1;
inline constexpr std::int32_t kBankFormatVersion = 2;
inline constexpr std::int32_t kOldBankFormatVersion = 1; // the same without the current program; only read

/** A program or bank as a preset or bank file keeps it, all numbers big-endian in the file. */
struct SPresetRecord
{
    bool mHasChunk = false;
    std::int32_t mUniqueId = 0;
    std::int32_t mVersion = 0;                   // of the plug-in that wrote it
    std::int32_t mCount = 0;                     // a program's parameters, a bank's programs
    std::optional<std::int32_t> mCurrentProgram; // one of a bank's; none where the bank does not tell it
    std::array<char, kRecordNameSize> mName{};   // of a program
    std::span<const std::byte> mContent;         // the chunk, the parameter values or the program records
};

/**
 * Reads one program record that fills `inBytes` to its end.
 *
 * The byte size in a record may be the record's size less 16, as this host writes it, or less 8, as
 * other programs do.
 * @return nothing for what is no such record or not whole; `mContent` lies in `inBytes`.
 */
std::optional<SPresetRecord> ReadProgramRecord(std::span<const std::byte> inBytes);

/** The same for a bank record; the program records in it are not looked at. */
std::optional<SPresetRecord> ReadBankRecord(std::span<const std::byte> inBytes);

/** @return bytes of the program record that `inBytes` begins with, by its kind and parameter count; 0 for
 * none. */
std::size_t ProgramRecordSize(std::span<const std::byte> inBytes);

/** One parameter value of a program record's content. The index must be below the record's count. */
float ParameterValue(const SPresetRecord& inRecord, std::size_t inIndex);
