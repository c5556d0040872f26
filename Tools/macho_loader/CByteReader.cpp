#include "Tools/macho_loader/CByteReader.h"

#include <algorithm>

namespace
{
constexpr std::uint8_t kMoreBytes = 0x80;
constexpr std::uint8_t kSignBit = 0x40;
constexpr unsigned kBits = 64;
} // namespace

std::uint64_t CByteReader::ReadUleb()
{
    std::uint64_t value = 0;
    std::uint8_t byte = kMoreBytes;
    for (unsigned shift = 0; (byte & kMoreBytes) != 0; shift += 7)
    {
        byte = Read<std::uint8_t>();
        if (shift < kBits)
            value |= static_cast<std::uint64_t>(byte & ~kMoreBytes) << shift;
    }
    return value;
}

std::int64_t CByteReader::ReadSleb()
{
    std::uint64_t value = 0;
    std::uint8_t byte = kMoreBytes;
    unsigned shift = 0;
    for (; (byte & kMoreBytes) != 0; shift += 7)
    {
        byte = Read<std::uint8_t>();
        if (shift < kBits)
            value |= static_cast<std::uint64_t>(byte & ~kMoreBytes) << shift;
    }
    if ((byte & kSignBit) != 0 && shift < kBits)
        value |= ~std::uint64_t{0} << shift;
    return static_cast<std::int64_t>(value);
}

std::string CByteReader::ReadText()
{
    std::string text;
    while (const char character = Read<char>())
        text += character;
    return text;
}

std::string CByteReader::ReadField(std::size_t inSize)
{
    const auto bytes = ReadBytes(inSize);
    return {bytes.begin(), std::find(bytes.begin(), bytes.end(), std::uint8_t{0})};
}
