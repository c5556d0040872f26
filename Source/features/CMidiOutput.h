#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "Interfaces/VST2/AEffect.h"
#include "Source/features/CMessageQueue.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class AAX_IMIDINode;

/**
 * The MIDI that a plug-in sends, on its way to the host's output node: what it sends while it renders goes
 * out in the same block, in the order of the frames; what it sends at other times waits for the next block.
 *
 * Both places are bounded. What finds no room is dropped, a message as a whole, and counted.
 *
 * Threads: `Wait` on any; everything else on the render thread, where nothing is allocated or locked.
 */
class CMidiOutput
{
public:
    /** Allocates what it needs. Before rendering; main thread. */
    void Prepare();
    /** Any thread. */
    bool IsPrepared() const noexcept { return mIsPrepared.load(std::memory_order_acquire); }

    /** What was sent at other times goes first. @param inFrames of the block; may not be positive. */
    void BeginBlock(std::int32_t inFrames) noexcept
    {
        mCount = 0;
        mByteCount = 0;
        mIsUnsorted = false;
        mLatestFrame = 0;
        mPartFrame = 0;
        mLastFrame = inFrames > 0 ? inFrames - 1 : 0;
        if (!mWaiting.IsEmpty()) [[unlikely]]
            TakeWaiting();
    }
    /** What the plug-in sends from now on belongs to the part of the block that begins there. */
    void BeginPart(std::int32_t inFirstFrame) noexcept { mPartFrame = inFirstFrame; }
    /** Sent while the plug-in renders. */
    void Take(const VstEvents& inEvents) noexcept;
    /** Sent at another time. */
    void Wait(const VstEvents& inEvents) noexcept;
    /** @param inNode null: nobody hears it. */
    void Post(AAX_IMIDINode* inNode) noexcept
    {
        if (mCount != 0 && inNode != nullptr) [[unlikely]]
            PostAll(*inNode);
    }

    /** Messages that found no room, here or in the host's node. Any thread. */
    std::uint64_t LostMessages() const noexcept { return mLost.load(std::memory_order_relaxed); }

    /** Of one block: messages, and bytes of all that are longer than a packet. */
    static constexpr std::size_t kMostMessages = 4096;
    static constexpr std::size_t kMostBytes = 65536;

private:
    // A packet for the node; of a message longer than that, mLength is the size and mData where it lies.
    using Packet = AAX_CMidiPacket;

    void TakeWaiting() noexcept;
    /** Within the block. */
    std::uint32_t FrameOf(std::int32_t inDelta) const noexcept;
    void AddShort(std::uint32_t inFrame, const std::uint8_t* inMessage, std::uint32_t inSize) noexcept;
    /** A message of any length; none where it is empty. */
    void AddMessage(std::uint32_t inFrame, std::span<const std::uint8_t> inMessage) noexcept;
    /** @return the next packet, its frame set; null where there is no room. */
    Packet* NextPacket(std::uint32_t inFrame) noexcept;
    void PostAll(AAX_IMIDINode& inNode) noexcept;
    void PostSorted(AAX_IMIDINode& inNode) noexcept;
    void PostOne(AAX_IMIDINode& inNode, Packet& ioPacket) noexcept;
    void PostLong(AAX_IMIDINode& inNode, const Packet& inPacket) noexcept;
    void CountLost() noexcept { mLost.fetch_add(1, std::memory_order_relaxed); }

    // Stored (release) when all places are there; loaded (acquire) by whoever sends: a plug-in's thread may
    // do so ahead of the first block.
    std::atomic<bool> mIsPrepared{false};
    bool mIsUnsorted = false;
    std::uint32_t mLatestFrame = 0;
    std::uint32_t mCount = 0; // of messages in this block
    std::int32_t mLastFrame = 0;
    std::int32_t mPartFrame = 0;
    std::size_t mByteCount = 0; // of all long ones
    std::vector<Packet> mPackets;
    std::vector<std::uint8_t> mBytes;  // of the long ones
    std::vector<std::uint32_t> mOrder; // in which unsorted packets go
    CMessageQueue mWaiting;
    std::atomic<std::uint64_t> mLost{0}; // any thread counts; no other memory hangs on it
};
