#pragma once
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

/**
 * MIDI messages on their way to the render thread, in the order in which they came, as many as there is room
 * for: the oldest are kept.
 *
 * Threads: `Push` on any, one after the other; `Pop` on the render thread only, which neither allocates nor
 * locks and never waits for the others.
 */
class CMessageQueue
{
public:
    struct SMessage
    {
        std::int32_t mFrame;
        std::size_t mSize; // bytes
    };

    /** Allocates. Before anything else. @param inBytes room, a power of two; 8 are taken by each message. */
    void Prepare(std::size_t inBytes);
    /** @return false where there is no room for it. */
    bool Push(std::int32_t inFrame, std::span<const std::uint8_t> inMessage);
    /** For the render thread. */
    bool IsEmpty() const noexcept
    {
        return mEnd.load(std::memory_order_relaxed) == mBegin.load(std::memory_order_relaxed);
    }
    /** @return nothing where none waits, or where the next one finds no room in `outBytes`: it waits on. */
    std::optional<SMessage> Pop(std::span<std::uint8_t> outBytes) noexcept;

private:
    struct SHeader
    {
        std::int32_t mFrame;
        std::uint32_t mSize;
    };

    void Write(std::size_t inPosition, std::span<const std::uint8_t> inBytes) noexcept;
    void Read(std::size_t inPosition, std::span<std::uint8_t> outBytes) const noexcept;

    std::vector<std::uint8_t> mBytes;
    std::mutex mPushing;
    // Positions that only rise. A message is written, then mEnd is stored (release) and loaded (acquire) by
    // the render thread; it is read, then mBegin is stored (release) and loaded (acquire) by who pushes.
    std::atomic<std::size_t> mBegin{0};
    std::atomic<std::size_t> mEnd{0};
};
