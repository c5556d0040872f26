#pragma once
#include <array>
#include <cstddef>
#include <cstdint>

/** A MIDI message of up to three bytes and when it is due. */
struct SQueuedMessage
{
    std::int32_t mOffset; // samples from the start of the block
    std::array<std::uint8_t, 3> mBytes;
};

/**
 * The messages of the next block, ordered by time; those of the same time keep the order they came in.
 *
 * Render thread only; nothing is allocated. When it is full the newest message is dropped.
 */
class CMidiQueue
{
public:
    static constexpr std::size_t kCapacity = 4096;

    /** A negative offset counts as 0. */
    void Push(SQueuedMessage inMessage) noexcept;
    /** @return the next message if it is due at the given sample, else null; valid until the next push. */
    const SQueuedMessage* PopDue(std::int32_t inOffset) noexcept;
    /** Ends a block: what was not due in it is due in a later one. */
    void Advance(std::int32_t inFrames) noexcept;
    void Clear() noexcept;

private:
    std::array<SQueuedMessage, kCapacity> mMessages{};
    std::size_t mFirst = 0;
    std::size_t mEnd = 0;
};
