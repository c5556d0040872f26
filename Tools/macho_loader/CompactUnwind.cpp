#include "Tools/macho_loader/CompactUnwind.h"

#include "Tools/macho_loader/CByteReader.h"
#include "Tools/macho_loader/UnwindInfo.h"

#include <array>
#include <vector>

namespace
{
// Register numbers of DWARF.
constexpr std::uint8_t kRbx = 3;
constexpr std::uint8_t kRbp = 6;
constexpr std::uint8_t kRsp = 7;
constexpr std::uint8_t kReturnAddress = 16;

/** By the number that compact encodings give to a saved register; 0 is none. */
constexpr std::array<std::uint8_t, 7> kSavedRegisters = {0, kRbx, 12, 13, 14, 15, kRbp};
constexpr std::uint64_t kWord = 8;

constexpr std::uint32_t Field(std::uint32_t inEncoding, unsigned inLowestBit, std::uint32_t inMask)
{
    return (inEncoding >> inLowestBit) & inMask;
}

class CFrameProgram
{
public:
    void CallerFrameAt(std::uint8_t inRegister, std::uint64_t inDistance)
    {
        constexpr std::uint8_t kDefineFrame = 0x0C;
        mBytes.push_back(kDefineFrame);
        AppendUleb(mBytes, inRegister);
        AppendUleb(mBytes, inDistance);
    }
    /** @param inDistance bytes below the start of the caller's frame. */
    void SavedAt(std::uint8_t inRegister, std::uint64_t inDistance)
    {
        constexpr std::uint8_t kSavedAtOffset = 0x80;
        mBytes.push_back(kSavedAtOffset | inRegister);
        AppendUleb(mBytes, inDistance / kWord);
    }
    ByteVector Take() { return std::move(mBytes); }

private:
    ByteVector mBytes;
};

ByteVector WithFramePointer(std::uint32_t inEncoding)
{
    constexpr unsigned kMostRegisters = 5;
    CFrameProgram program;
    program.CallerFrameAt(kRbp, 2 * kWord);
    program.SavedAt(kReturnAddress, kWord);
    program.SavedAt(kRbp, 2 * kWord);
    const std::uint32_t firstSlot = Field(inEncoding, 16, 0xFF); // words below rbp
    for (unsigned i = 0; i < kMostRegisters; ++i)
    {
        const std::uint32_t number = Field(inEncoding, 3 * i, 0x7);
        if (number != 0)
            program.SavedAt(kSavedRegisters.at(number), 2 * kWord + kWord * (firstSlot - i));
    }
    return program.Take();
}

/**
 * The order in which registers were saved is one number: of each register, its place among those not yet
 * named, as digits whose bases shrink by one from 6 on.
 */
std::vector<std::uint8_t> RegistersOfPermutation(std::uint32_t inCount, std::uint32_t inPermutation)
{
    std::vector<std::uint32_t> digits(inCount);
    for (std::uint32_t i = inCount; i-- > 0; inPermutation /= 6 - i)
        digits[i] = inPermutation % (6 - i);

    std::vector<std::uint8_t> available(kSavedRegisters.begin() + 1, kSavedRegisters.end());
    std::vector<std::uint8_t> registers;
    for (const std::uint32_t digit : digits)
    {
        const auto found = available.begin() + digit;
        registers.push_back(*found);
        available.erase(found);
    }
    return registers;
}

ByteVector WithoutFramePointer(std::uint32_t inEncoding, std::span<const std::uint8_t> inCode)
{
    std::uint64_t frameSize = kWord * Field(inEncoding, 16, 0xFF);
    if ((inEncoding & kUnwindModeMask) == kUnwindFramelessLarge)
    {
        const std::uint32_t operand = Field(inEncoding, 16, 0xFF); // of the instruction that makes the frame
        frameSize = ReadAt<std::uint32_t>(inCode, operand) + kWord * Field(inEncoding, 13, 0x7);
    }
    CFrameProgram program;
    program.CallerFrameAt(kRsp, frameSize);
    program.SavedAt(kReturnAddress, kWord);
    const std::uint32_t count = Field(inEncoding, 10, 0x7);
    if (count >= kSavedRegisters.size())
        throw CMachOError("a compact unwind entry with too many registers");
    std::uint64_t distance = kWord * (count + 1); // the first one saved lies lowest
    for (const std::uint8_t saved : RegistersOfPermutation(count, Field(inEncoding, 0, 0x3FF)))
    {
        program.SavedAt(saved, distance);
        distance -= kWord;
    }
    return program.Take();
}
} // namespace

ByteVector FrameInstructions(std::uint32_t inEncoding, std::span<const std::uint8_t> inCode)
{
    switch (inEncoding & kUnwindModeMask)
    {
    case kUnwindFrameRbp: return WithFramePointer(inEncoding);
    case kUnwindFrameless:
    case kUnwindFramelessLarge: return WithoutFramePointer(inEncoding, inCode);
    default: throw CMachOError("unexpected mode of a compact unwind entry");
    }
}
