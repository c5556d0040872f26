#include "Source/features/CMessageQueue.h"

#include <algorithm>
#include <bit>
#include <cstring>

void CMessageQueue::Prepare(std::size_t inBytes) { mBytes.assign(std::bit_ceil(inBytes), 0); }

bool CMessageQueue::Push(std::int32_t inFrame, std::span<const std::uint8_t> inMessage)
{
    const std::lock_guard lock(mPushing);
    const std::size_t end = mEnd.load(std::memory_order_relaxed);
    const std::size_t free = mBytes.size() - (end - mBegin.load(std::memory_order_acquire));
    if (inMessage.size() > mBytes.size() || free < inMessage.size() + sizeof(SHeader))
        return false;
    const SHeader header{inFrame, static_cast<std::uint32_t>(inMessage.size())};
    Write(end, {reinterpret_cast<const std::uint8_t*>(&header), sizeof(header)});
    Write(end + sizeof(header), inMessage);
    mEnd.store(end + sizeof(header) + inMessage.size(), std::memory_order_release);
    return true;
}

std::optional<CMessageQueue::SMessage> CMessageQueue::Pop(std::span<std::uint8_t> outBytes) noexcept
{
    const std::size_t begin = mBegin.load(std::memory_order_relaxed);
    if (mEnd.load(std::memory_order_acquire) == begin)
        return std::nullopt;
    SHeader header{};
    Read(begin, {reinterpret_cast<std::uint8_t*>(&header), sizeof(header)});
    if (header.mSize > outBytes.size())
        return std::nullopt;
    Read(begin + sizeof(header), outBytes.first(header.mSize));
    mBegin.store(begin + sizeof(header) + header.mSize, std::memory_order_release);
    return SMessage{header.mFrame, header.mSize};
}

void CMessageQueue::Write(std::size_t inPosition, std::span<const std::uint8_t> inBytes) noexcept
{
    const std::size_t place = inPosition & (mBytes.size() - 1);
    const std::size_t first = std::min(inBytes.size(), mBytes.size() - place);
    std::copy_n(inBytes.begin(), first, mBytes.begin() + static_cast<std::ptrdiff_t>(place));
    std::copy(inBytes.begin() + static_cast<std::ptrdiff_t>(first), inBytes.end(), mBytes.begin());
}

void CMessageQueue::Read(std::size_t inPosition, std::span<std::uint8_t> outBytes) const noexcept
{
    const std::size_t place = inPosition & (mBytes.size() - 1);
    const std::size_t first = std::min(outBytes.size(), mBytes.size() - place);
    std::copy_n(mBytes.begin() + static_cast<std::ptrdiff_t>(place), first, outBytes.begin());
    std::copy_n(mBytes.begin(), outBytes.size() - first,
                outBytes.begin() + static_cast<std::ptrdiff_t>(first));
}
