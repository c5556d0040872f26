#include "Examples/delay/CDelayLine.h"

#include <algorithm>
#include <bit>

void CDelayLine::Resize(std::size_t inSamples)
{
    mSamples.assign(std::bit_ceil(inSamples + 2), 0.0F);
    mNewest = 0;
}

void CDelayLine::Clear() noexcept { std::ranges::fill(mSamples, 0.0F); }

void CDelayLine::Push(float inSample) noexcept
{
    mNewest = (mNewest + 1) & (mSamples.size() - 1);
    mSamples[mNewest] = inSample;
}

float CDelayLine::Read(double inSamples) const noexcept
{
    const auto whole = static_cast<std::size_t>(inSamples);
    const auto part = static_cast<float>(inSamples - static_cast<double>(whole));
    const std::size_t mask = mSamples.size() - 1;
    const float newer = mSamples[(mNewest - whole) & mask];
    const float older = mSamples[(mNewest - whole - 1) & mask];
    return newer + part * (older - newer);
}
