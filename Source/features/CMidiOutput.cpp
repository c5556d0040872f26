#include "Source/features/CMidiOutput.h"

#include "Interfaces/AAX/AAX_IMIDINode.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>
#include <optional>
#include <utility>

namespace
{
/** Bytes of a message by its status byte; 0 for what is none, or is system exclusive. */
constexpr std::uint8_t MessageSize(std::uint8_t inStatus) noexcept
{
    if (inStatus < 0x80 || inStatus == 0xF0)
        return 0;
    if (inStatus < 0xF0)
        return inStatus >= 0xC0 && inStatus < 0xE0 ? 2 : 3;
    if (inStatus == 0xF2) // song position
        return 3;
    return inStatus == 0xF1 || inStatus == 0xF3 ? 2 : 1; // quarter frame, song select
}

constexpr std::array<std::uint8_t, 256> kMessageSizes = []
{
    std::array<std::uint8_t, 256> sizes{};
    for (std::size_t status = 0; status < sizes.size(); ++status)
        sizes[status] = MessageSize(static_cast<std::uint8_t>(status));
    return sizes;
}();

const std::uint8_t* BytesOf(const VstEvent& inEvent) noexcept
{
    return reinterpret_cast<const std::uint8_t*>(reinterpret_cast<const VstMidiEvent&>(inEvent).midiData);
}

/** Its bytes; empty for an event that is no such message. */
std::span<const std::uint8_t> DumpOf(const VstEvent& inEvent) noexcept
{
    const auto& event = reinterpret_cast<const VstMidiSysexEvent&>(inEvent);
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(event.sysexDump);
    if (inEvent.type != kVstSysExType || bytes == nullptr || event.dumpBytes <= 0 || bytes[0] != 0xF0)
        return {};
    return {bytes, static_cast<std::size_t>(event.dumpBytes)};
}
} // namespace

void CMidiOutput::Prepare()
{
    mPackets.resize(kMostMessages);
    mOrder.resize(kMostMessages);
    mBytes.resize(kMostBytes);
    mWaiting.Prepare(kMostBytes);
    mIsPrepared.store(true, std::memory_order_release);
}

void CMidiOutput::TakeWaiting() noexcept
{
    while (!mWaiting.IsEmpty() && mCount < kMostMessages)
    {
        const std::span<std::uint8_t> room = std::span(mBytes).subspan(mByteCount);
        const std::optional<CMessageQueue::SMessage> message = mWaiting.Pop(room);
        if (!message)
            return;
        AddMessage(FrameOf(message->mFrame), room.first(message->mSize));
    }
}

void CMidiOutput::Take(const VstEvents& inEvents) noexcept
{
    const VstEvent* const* const list = inEvents.events;
    const std::int32_t count = inEvents.numEvents;
    for (std::int32_t i = 0; i < count; ++i)
    {
        const VstEvent* const event = list[i];
        if (event == nullptr) [[unlikely]]
            continue;
        const std::uint32_t frame = FrameOf(event->deltaFrames);
        if (event->type == kVstMidiType) [[likely]]
            AddShort(frame, BytesOf(*event), kMessageSizes[*BytesOf(*event)]);
        else
            AddMessage(frame, DumpOf(*event));
    }
}

void CMidiOutput::Wait(const VstEvents& inEvents) noexcept
{
    for (std::int32_t i = 0; i < inEvents.numEvents; ++i)
    {
        const VstEvent* const event = inEvents.events[i];
        if (event == nullptr)
            continue;
        const std::span<const std::uint8_t> message =
            event->type == kVstMidiType ? std::span(BytesOf(*event), kMessageSizes[*BytesOf(*event)])
                                        : DumpOf(*event);
        if (!message.empty() && !mWaiting.Push(event->deltaFrames, message))
            CountLost();
    }
}

inline std::uint32_t CMidiOutput::FrameOf(std::int32_t inDelta) const noexcept
{
    return static_cast<std::uint32_t>(
        std::clamp<std::int64_t>(std::int64_t{mPartFrame} + inDelta, 0, mLastFrame));
}

inline CMidiOutput::Packet* CMidiOutput::NextPacket(std::uint32_t inFrame) noexcept
{
    const std::uint32_t count = mCount;
    if (count == kMostMessages) [[unlikely]]
    {
        CountLost();
        return nullptr;
    }
    mCount = count + 1;
    mIsUnsorted |= inFrame < mLatestFrame;
    mLatestFrame = inFrame;
    Packet* const packet = mPackets.data() + count;
    packet->mTimestamp = inFrame;
    return packet;
}

inline void CMidiOutput::AddShort(std::uint32_t inFrame, const std::uint8_t* inMessage,
                                  std::uint32_t inSize) noexcept
{
    Packet* const packet = inSize != 0 ? NextPacket(inFrame) : nullptr;
    if (packet == nullptr) [[unlikely]]
        return;
    packet->mLength = inSize;
    // All four of the event; those behind the message are cleared, whatever they were.
    std::uint32_t bytes;
    std::memcpy(&bytes, inMessage, sizeof(bytes));
    bytes &= UINT32_MAX >> 8 * (sizeof(bytes) - inSize);
    std::memcpy(packet->mData, &bytes, sizeof(bytes));
}

void CMidiOutput::AddMessage(std::uint32_t inFrame, std::span<const std::uint8_t> inMessage) noexcept
{
    if (inMessage.size() <= sizeof(Packet::mData))
    {
        std::array<std::uint8_t, sizeof(Packet::mData)> bytes{};
        std::ranges::copy(inMessage, bytes.begin());
        return AddShort(inFrame, bytes.data(), static_cast<std::uint32_t>(inMessage.size()));
    }
    if (inMessage.size() > kMostBytes - mByteCount)
        return CountLost();
    Packet* const packet = NextPacket(inFrame);
    if (packet == nullptr)
        return;
    packet->mLength = static_cast<std::uint32_t>(inMessage.size());
    const auto offset = static_cast<std::uint32_t>(mByteCount);
    std::memcpy(packet->mData, &offset, sizeof(offset));
    // One that has waited lies there already.
    std::memmove(mBytes.data() + mByteCount, inMessage.data(), inMessage.size());
    mByteCount += inMessage.size();
}

void CMidiOutput::PostAll(AAX_IMIDINode& inNode) noexcept
{
    if (mIsUnsorted)
        return PostSorted(inNode);
    for (std::uint32_t i = 0; i < mCount; ++i)
        PostOne(inNode, mPackets.data()[i]);
}

void CMidiOutput::PostSorted(AAX_IMIDINode& inNode) noexcept
{
    const std::span<std::uint32_t> order = std::span(mOrder).first(mCount);
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::sort(order, {},
                      [this](std::uint32_t inPlace)
                      { return std::pair(mPackets[inPlace].mTimestamp, inPlace); });
    for (const std::uint32_t place : order)
        PostOne(inNode, mPackets[place]);
}

inline void CMidiOutput::PostOne(AAX_IMIDINode& inNode, Packet& ioPacket) noexcept
{
    if (ioPacket.mLength > sizeof(Packet::mData)) [[unlikely]]
        PostLong(inNode, ioPacket);
    else if (inNode.PostMIDIPacket(&ioPacket) != kAAX_Success) [[unlikely]]
        CountLost();
}

void CMidiOutput::PostLong(AAX_IMIDINode& inNode, const Packet& inPacket) noexcept
{
    std::uint32_t offset = 0;
    std::memcpy(&offset, inPacket.mData, sizeof(offset));
    std::span<const std::uint8_t> rest = std::span(mBytes).subspan(offset, inPacket.mLength);
    while (!rest.empty())
    {
        Packet packet{};
        packet.mTimestamp = inPacket.mTimestamp;
        packet.mLength = static_cast<std::uint32_t>(std::min(rest.size(), sizeof(packet.mData)));
        std::ranges::copy(rest.first(packet.mLength), packet.mData);
        if (inNode.PostMIDIPacket(&packet) != kAAX_Success)
            return CountLost(); // the rest of a message alone would be none
        rest = rest.subspan(packet.mLength);
    }
}
