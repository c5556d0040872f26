#pragma once
#include <cstdint>

/** A size in pixels. So aligned that an atomic one needs no help of a library. */
struct alignas(8) SPixelSize
{
    std::int32_t mWidth = 0;
    std::int32_t mHeight = 0;
    bool operator==(const SPixelSize&) const = default;
    /** Whether an editor can have it. */
    constexpr bool IsSensible() const noexcept
    {
        return mWidth >= 1 && mHeight >= 1 && mWidth <= kMost && mHeight <= kMost;
    }
    static constexpr std::int32_t kMost = 16384;
};
