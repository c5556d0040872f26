#pragma once
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

using ByteVector = std::vector<std::uint8_t>;

inline void AppendBytes(ByteVector& ioBytes, std::span<const std::uint8_t> inBytes)
{
    ioBytes.insert(ioBytes.end(), inBytes.begin(), inBytes.end());
}

template <class Number>
void AppendNumber(ByteVector& ioBytes, Number inNumber)
{
    std::uint8_t bytes[sizeof(inNumber)];
    std::memcpy(bytes, &inNumber, sizeof(inNumber));
    AppendBytes(ioBytes, bytes);
}

/** Seven bits a byte, the lowest first. */
inline void AppendUleb(ByteVector& ioBytes, std::uint64_t inNumber)
{
    constexpr std::uint8_t kGoesOn = 0x80;
    for (; inNumber >= kGoesOn; inNumber >>= 7)
        ioBytes.push_back(static_cast<std::uint8_t>(inNumber | kGoesOn));
    ioBytes.push_back(static_cast<std::uint8_t>(inNumber));
}
