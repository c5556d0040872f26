#include "Source/plugins/CVst2Plugin.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr std::int32_t kBankChunk = 0;    // index of the chunk opcodes
constexpr std::int32_t kProgramChunk = 1; // index of the chunk opcodes
/** Far above what any plug-in has; keeps a nonsensical count from becoming a huge allocation. */
constexpr long kMaxStateParameters = 1L << 20;
/** A program of more bytes is a plug-in's mistake. */
constexpr long kMaxProgramSize = 0x7FFF0000;

std::uint32_t ReverseBytes(std::uint32_t inValue)
{
    return (inValue << 24) | ((inValue & 0xFF00U) << 8) | ((inValue >> 8) & 0xFF00U) | (inValue >> 24);
}

bool IsBlock(const void* inData, long inSize) { return inSize == 0 || (inSize > 0 && inData != nullptr); }
} // namespace

bool CVst2Plugin::GotChunk() const
{
    return mEffect != nullptr && (mEffect->flags & effFlagsProgramChunks) != 0;
}

void CVst2Plugin::RequestChunk(std::int32_t inScope, void*& outChunk, long& outSize) const
{
    outChunk = nullptr;
    outSize = mEffect != nullptr ? static_cast<long>(Dispatch(effGetChunk, inScope, 0, &outChunk)) : 0;
    if (outChunk == nullptr || outSize < 0)
        outSize = 0;
}

long CVst2Plugin::GetChunkSize()
{
    RequestChunk(kBankChunk, mChunk, mChunkSize);
    return mChunkSize;
}

void* CVst2Plugin::GetChunk()
{
    RequestChunk(kBankChunk, mChunk, mChunkSize);
    return mChunk;
}

void CVst2Plugin::SetChunk(void* inData, long inSize)
{
    if (mEffect != nullptr && IsBlock(inData, inSize))
        (void)Dispatch(effSetChunk, kBankChunk, inSize,
                       inData); // plug-ins don't agree on what the result means
}

void* CVst2Plugin::GetState(long& outSize)
{
    outSize = 0;
    if (mEffect == nullptr)
        return nullptr;
    if (GotChunk())
    {
        void* chunk = nullptr;
        RequestChunk(kProgramChunk, chunk, outSize);
        outSize = outSize <= kMaxProgramSize ? outSize : 0;
        return chunk;
    }
    const long count = std::clamp(GetNumParameters(), 0L, kMaxStateParameters);
    mStateBuffer = std::make_unique<float[]>(static_cast<std::size_t>(count));
    outSize = count * static_cast<long>(sizeof(float));
    return mStateBuffer.get();
}

void CVst2Plugin::SetState(void* inData, long inSize)
{
    if (mEffect == nullptr || !IsBlock(inData, inSize))
        return;
    if (GotChunk())
    {
        (void)Dispatch(effSetChunk, kProgramChunk, inSize,
                       inData); // plug-ins don't agree on what the result means
        return;
    }
    // The block may be another plug-in's: only parameters that exist are set.
    const auto* bytes = static_cast<const unsigned char*>(inData);
    const long count = std::min(inSize / static_cast<long>(sizeof(float)), GetNumParameters());
    for (long i = 0; i < count; ++i, bytes += sizeof(float))
    {
        float value = 0.0F;
        std::memcpy(&value, bytes, sizeof(value));
        SetParameter(i, value);
    }
}

float CVst2Plugin::Swap(float inValue) const
{
    std::uint32_t bits = 0;
    std::memcpy(&bits, &inValue, sizeof(bits));
    bits = mSwapBytes ? ReverseBytes(bits) : bits;
    std::memcpy(&inValue, &bits, sizeof(bits));
    return inValue;
}

long CVst2Plugin::Swap(long inValue) const
{
    return mSwapBytes ? static_cast<std::int32_t>(ReverseBytes(static_cast<std::uint32_t>(inValue)))
                      : inValue;
}
