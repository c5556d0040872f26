#pragma once
#include "Interfaces/AAX/AAX_Types.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/** A chunk record whose data ends exactly where its memory does, so that a reader that goes on is seen. */
class CFuzzChunk
{
public:
    explicit CFuzzChunk(std::size_t inDataSize) : mMemory(kHeaderSize + inDataSize)
    {
        Record().mSize = static_cast<std::int32_t>(inDataSize);
    }
    explicit CFuzzChunk(std::span<const std::uint8_t> inData) : CFuzzChunk(inData.size())
    {
        std::copy(inData.begin(), inData.end(), mMemory.begin() + kHeaderSize);
    }
    AAX_SPlugInChunk& Record() { return *reinterpret_cast<AAX_SPlugInChunk*>(mMemory.data()); }

private:
    static constexpr std::ptrdiff_t kHeaderSize = offsetof(AAX_SPlugInChunk, mData);
    std::vector<std::uint8_t> mMemory;
};
