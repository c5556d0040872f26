#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "Interfaces/VST2/AEffect.h"
#include "Source/plugins/CVst2Plugin.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/**
 * Puts system exclusive messages together that arrive in packets of four bytes, and hands them on among the
 * other events of their block, at the frame of their last packet. A message that another status byte breaks,
 * or that is too long, is dropped as a whole; realtime bytes inside of one go on as events of their own.
 *
 * Threads: the render thread, but for `Prepare` before it renders. Nothing is allocated there.
 */
class CSysexInput
{
public:
    /** Allocates what it needs. */
    void Prepare();
    /** Whether one of the packets belongs to such a message. */
    bool Concerns(std::span<const AAX_CMidiPacket> inPackets) const noexcept;
    /**
     * Gives the plug-in the packets from one frame up to another in as few calls as they take.
     * @param inFirstFrame of the part of the block, which its events are counted from.
     */
    void Forward(std::span<const AAX_CMidiPacket> inPackets, std::uint32_t inFirstFrame,
                 std::uint32_t inEndFrame, CVst2Plugin& ioPlugin);

    /** Of one message. */
    static constexpr std::size_t kMostBytes = 65536;

private:
    static constexpr std::size_t kMostEvents = CVst2Plugin::kMaxEvents;
    struct SEvents
    {
        std::int32_t mNumEvents = 0;
        VstIntPtr mReserved = 0;
        std::array<VstEvent*, kMostEvents> mEvents{};
    };
    enum class EState
    {
        kNone,
        kCollecting,
        kDropping
    };

    void Take(const AAX_CMidiPacket& inPacket, std::uint32_t inFirstFrame, CVst2Plugin& ioPlugin);
    void TakeByte(std::uint8_t inByte, std::int32_t inFrame, CVst2Plugin& ioPlugin);
    void Collect(std::uint8_t inByte, CVst2Plugin& ioPlugin);
    void AddShort(std::span<const std::uint8_t> inBytes, std::int32_t inFrame, CVst2Plugin& ioPlugin);
    void AddMessage(std::int32_t inFrame, CVst2Plugin& ioPlugin);
    /** Adds an event of a type to a call; what it is about is left to be said. */
    template <typename Event>
    Event& Add(std::int32_t inType, std::int32_t inFrame, std::vector<Event>& ioEvents,
               CVst2Plugin& ioPlugin);
    /** Gives the plug-in what was added; what is being collected moves to the front. */
    void Flush(CVst2Plugin& ioPlugin);

    EState mState = EState::kNone;
    std::vector<std::uint8_t> mBytes; // of the messages that were added, then of the one that is collected
    std::size_t mBegin = 0;           // of the one that is collected
    std::size_t mEnd = 0;
    SEvents mEvents;
    std::vector<VstMidiEvent> mShorts; // each event of the call has its place here or there
    std::vector<VstMidiSysexEvent> mMessages;
};
