#pragma once
#include <cstdint>
#include <span>

/** The noise that what is measured renders, the same each time: -12 dB at most. */
inline void FillWithNoise(std::span<float> outSamples)
{
    std::uint32_t noise = 1;
    for (float& sample : outSamples)
    {
        noise = noise * 1664525U + 1013904223U;
        sample = 0.25F * (static_cast<float>(noise >> 8) / 8388608.0F - 1.0F);
    }
}
