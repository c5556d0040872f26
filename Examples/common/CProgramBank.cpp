#include "Examples/common/CProgramBank.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <utility>

namespace
{
constexpr std::uint32_t kFormatVersion = 1;

/** Numbers are little-endian, whatever the machine. */
class CChunkWriter
{
public:
    void Put(std::uint32_t inNumber)
    {
        for (int shift = 0; shift < 32; shift += 8)
            mBytes.push_back(static_cast<std::byte>(inNumber >> shift));
    }
    void Put(std::span<const char> inText)
    {
        const auto bytes = std::as_bytes(inText);
        mBytes.insert(mBytes.end(), bytes.begin(), bytes.end());
    }
    std::vector<std::byte>& Bytes() { return mBytes; }

private:
    std::vector<std::byte> mBytes;
};

/** Reads what the size was checked for beforehand. */
class CChunkReader
{
public:
    explicit CChunkReader(std::span<const std::byte> inBytes) : mBytes(inBytes) {}
    std::uint32_t Number()
    {
        std::uint32_t number = 0;
        for (std::size_t i = 0; i < sizeof(number); ++i)
            number |= std::to_integer<std::uint32_t>(mBytes[i]) << (8 * i);
        mBytes = mBytes.subspan(sizeof(number));
        return number;
    }
    void Text(std::span<char> outText)
    {
        std::memcpy(outText.data(), mBytes.data(), outText.size());
        mBytes = mBytes.subspan(outText.size());
    }

private:
    std::span<const std::byte> mBytes;
};

/** FNV-1a: tells a damaged chunk from a whole one. */
std::uint32_t Checksum(std::span<const std::byte> inBytes)
{
    std::uint32_t sum = 0x811C9DC5;
    for (const std::byte byte : inBytes)
        sum = (sum ^ std::to_integer<std::uint32_t>(byte)) * 0x01000193;
    return sum;
}

// Owner, format version, scope, number of parameters, number of programs, current program.
constexpr std::size_t kHeaderSize = 6 * sizeof(std::uint32_t);
} // namespace

CProgramBank::CProgramBank(std::int32_t inOwner, std::span<const SParameterInfo> inParameters,
                           std::span<const SFactoryProgram> inPrograms)
    : mOwner(static_cast<std::uint32_t>(inOwner)),
      mParameterCount(inParameters.size()),
      mNames(inPrograms.size()),
      mValues(inPrograms.size() * inParameters.size())
{
    for (std::size_t program = 0; program < inPrograms.size(); ++program)
    {
        Rename(program, inPrograms[program].mName);
        for (std::size_t i = 0; i < mParameterCount; ++i)
        {
            mValues[program * mParameterCount + i] =
                static_cast<float>(inParameters[i].ToNormalized(inPrograms[program].mValues[i]));
        }
    }
}

void CProgramBank::Select(std::size_t inProgram) noexcept
{
    if (inProgram < ProgramCount())
        mCurrent.store(inProgram, std::memory_order_relaxed);
}

float CProgramBank::Value(std::size_t inParameter) const noexcept
{
    return mValues[Current() * mParameterCount + inParameter].load(std::memory_order_relaxed);
}

void CProgramBank::SetValue(std::size_t inParameter, float inValue) noexcept
{
    if (!std::isnan(inValue))
    {
        mValues[Current() * mParameterCount + inParameter].store(std::clamp(inValue, 0.0F, 1.0F),
                                                                 std::memory_order_relaxed);
    }
}

void CProgramBank::Rename(std::size_t inProgram, std::string_view inName) noexcept
{
    ProgramName& name = mNames[inProgram];
    name.fill('\0');
    inName.copy(name.data(), kNameLength);
}

std::vector<std::byte> CProgramBank::Save(EScope inScope) const
{
    CChunkWriter writer;
    const std::size_t first = inScope == kBank ? 0 : Current();
    for (const std::size_t number : {std::size_t{mOwner}, std::size_t{kFormatVersion}, std::size_t{inScope},
                                     mParameterCount, ProgramsIn(inScope), Current()})
        writer.Put(static_cast<std::uint32_t>(number));
    for (std::size_t program = first; program < first + ProgramsIn(inScope); ++program)
    {
        writer.Put(std::span(mNames[program]).first(kNameLength));
        for (std::size_t i = 0; i < mParameterCount; ++i)
            writer.Put(std::bit_cast<std::uint32_t>(mValues[program * mParameterCount + i].load()));
    }
    writer.Put(Checksum(writer.Bytes()));
    return std::move(writer.Bytes());
}

bool CProgramBank::Load(EScope inScope, std::span<const std::byte> inChunk)
{
    const std::size_t programs = ProgramsIn(inScope);
    const std::size_t size = kHeaderSize + programs * (kNameLength + mParameterCount * sizeof(std::uint32_t));
    if (inChunk.size() != size + sizeof(std::uint32_t) ||
        CChunkReader(inChunk.subspan(size)).Number() != Checksum(inChunk.first(size)))
        return false;
    CChunkReader reader(inChunk);
    for (const std::size_t expected :
         {std::size_t{mOwner}, std::size_t{kFormatVersion}, std::size_t{inScope}, mParameterCount, programs})
        if (reader.Number() != expected)
            return false;
    const std::size_t current = reader.Number();
    if (inScope == kBank)
        Select(current);
    const std::size_t first = inScope == kBank ? 0 : Current();
    for (std::size_t program = first; program < first + programs; ++program)
    {
        reader.Text(std::span(mNames[program]).first(kNameLength));
        for (std::size_t i = 0; i < mParameterCount; ++i)
        {
            const auto value = std::bit_cast<float>(reader.Number());
            // A NaN compares false with everything and falls to 0.
            mValues[program * mParameterCount + i] = value > 0.0F ? std::min(value, 1.0F) : 0.0F;
        }
    }
    return true;
}
