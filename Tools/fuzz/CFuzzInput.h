#pragma once
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

/** Takes decisions from the front of a fuzzer's input; behind its end all of them are 0. */
class CFuzzInput
{
public:
    explicit CFuzzInput(std::span<const std::uint8_t> inBytes) : mBytes(inBytes) {}

    bool AtEnd() const { return mBytes.empty(); }
    std::uint8_t Byte()
    {
        if (mBytes.empty())
            return 0;
        const std::uint8_t byte = mBytes.front();
        mBytes = mBytes.subspan(1);
        return byte;
    }
    /** Below inCount. */
    std::uint8_t Choice(std::uint8_t inCount) { return static_cast<std::uint8_t>(Byte() % inCount); }
    bool Yes() { return (Byte() & 1U) != 0; }
    std::uint64_t Number(int inBytes)
    {
        std::uint64_t number = 0;
        for (int i = 0; i < inBytes; ++i)
            number = number << 8 | Byte();
        return number;
    }
    /** Mostly from 0 to 1, sometimes any bits. */
    double Value()
    {
        const std::uint8_t kind = Byte();
        return kind < 0xF0 ? kind / 239.0 : std::bit_cast<double>(Number(8));
    }
    std::span<const std::uint8_t> Bytes(std::size_t inMost)
    {
        const auto taken = mBytes.first(std::min(inMost, mBytes.size()));
        mBytes = mBytes.subspan(taken.size());
        return taken;
    }

private:
    std::span<const std::uint8_t> mBytes;
};
