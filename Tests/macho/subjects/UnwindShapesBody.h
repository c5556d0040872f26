#pragma once
#include <array>
#include <string>
#include <utility>

namespace
{
using UnwindValues = std::array<long, 6>;

/** A value of which the compiler can't know anything. */
[[gnu::noinline]] int Opaque(int inValue)
{
    asm volatile("" : "+r"(inValue) : : "memory");
    return inValue;
}

[[gnu::noinline]] void Touch(volatile char* outBytes) { outBytes[0] = 1; }

template <int kKept, int kFrameBytes>
[[gnu::noinline]] long Descend(const UnwindValues& inValues, int inDepth)
{
    constexpr int kNext = (kKept + 3) % 7; // every count follows every other one somewhere
    std::array<long, kKept + 1> kept{};
    for (int i = 0; i < kKept; ++i)
        kept[i] = inValues[i] * 3 + i;
    if constexpr (kFrameBytes > 0)
    {
        volatile char bytes[kFrameBytes];
        Touch(bytes);
    }
    if (Opaque(inDepth) == 0)
        throw std::string("from below");
    long result = Descend<kNext, kFrameBytes>(inValues, inDepth - 1);
    for (int i = 0; i < kKept; ++i)
        result += kept[i] ^ Opaque(i);
    return result;
}

template <int kKept, int kFrameBytes>
[[gnu::noinline]] int LostByThrow(const UnwindValues& inValues)
{
    const long a = inValues[0] * 5;
    const long b = inValues[1] * 7;
    const long c = inValues[2] * 11;
    const long d = inValues[3] * 13;
    const long e = inValues[4] * 17;
    const long f = inValues[5] * 19;
    try
    {
        return 1 + static_cast<int>(Descend<kKept, kFrameBytes>(inValues, 9) & 1); // never gets here
    }
    catch (const std::string&)
    {
        // What counts is what is left afterwards.
    }
    int lost = 0;
    lost += a != inValues[0] * 5;
    lost += b != inValues[1] * 7;
    lost += c != inValues[2] * 11;
    lost += d != inValues[3] * 13;
    lost += e != inValues[4] * 17;
    lost += f != inValues[5] * 19;
    return lost;
}

template <int kFrameBytes, int... kKept>
int LostWithFrame(const UnwindValues& inValues, std::integer_sequence<int, kKept...>)
{
    return (0 + ... + LostByThrow<kKept, kFrameBytes>(inValues));
}

int LostInAllShapes()
{
    const UnwindValues values = {101, -202, 303, 1L << 40, 505, -606};
    constexpr auto kCounts = std::make_integer_sequence<int, 7>();
    return LostWithFrame<0>(values, kCounts) + LostWithFrame<200>(values, kCounts) +
           LostWithFrame<5'000>(values, kCounts) + LostWithFrame<100'000>(values, kCounts);
}
} // namespace
