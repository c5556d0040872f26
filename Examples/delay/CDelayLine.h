#pragma once
#include <cstddef>
#include <vector>

/** A ring of samples that can be read at any distance behind its newest one, between samples too. */
class CDelayLine
{
public:
    /** Makes room and silences. @param inSamples the largest distance asked for. May throw std::bad_alloc. */
    void Resize(std::size_t inSamples);
    void Clear() noexcept;
    void Push(float inSample) noexcept;
    /** @param inSamples behind the newest sample, at most what Resize was told. */
    float Read(double inSamples) const noexcept;

private:
    std::vector<float> mSamples = std::vector<float>(1); // a power of two of them
    std::size_t mNewest = 0;
};
