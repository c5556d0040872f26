#include "Source/features/CSysexInput.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr std::uint8_t kBegin = 0xF0;
constexpr std::uint8_t kEnd = 0xF7;
constexpr std::uint8_t kFirstStatus = 0x80;
constexpr std::uint8_t kFirstRealtime = 0xF8;

std::span<const std::uint8_t> BytesOf(const AAX_CMidiPacket& inPacket) noexcept
{
    return std::span(inPacket.mData).first(std::min<std::size_t>(inPacket.mLength, 4));
}
} // namespace

void CSysexInput::Prepare()
{
    mBytes.resize(2 * kMostBytes);
    mShorts.resize(kMostEvents);
    mMessages.resize(kMostEvents);
}

bool CSysexInput::Concerns(std::span<const AAX_CMidiPacket> inPackets) const noexcept
{
    return !inPackets.empty() && (mState != EState::kNone ||
                                  std::ranges::any_of(
                                      inPackets,
                                      [](const AAX_CMidiPacket& inPacket)
                                      {
                                          const std::uint8_t first = inPacket.mData[0];
                                          return first == kBegin || first == kEnd || first < kFirstStatus;
                                      }));
}

void CSysexInput::Forward(std::span<const AAX_CMidiPacket> inPackets, std::uint32_t inFirstFrame,
                          std::uint32_t inEndFrame, CVst2Plugin& ioPlugin)
{
    mEvents.mNumEvents = 0; // there are some left where the plug-in threw
    for (const AAX_CMidiPacket& packet : inPackets)
        if (packet.mTimestamp >= inFirstFrame && packet.mTimestamp < inEndFrame)
            Take(packet, inFirstFrame, ioPlugin);
    Flush(ioPlugin);
}

void CSysexInput::Take(const AAX_CMidiPacket& inPacket, std::uint32_t inFirstFrame, CVst2Plugin& ioPlugin)
{
    const std::span<const std::uint8_t> bytes = BytesOf(inPacket);
    if (bytes.empty())
        return;
    const auto frame = static_cast<std::int32_t>(inPacket.mTimestamp - inFirstFrame);
    const std::uint8_t first = bytes.front();
    const bool isMessage =
        first >= kFirstStatus && first < kFirstRealtime && first != kBegin && first != kEnd;
    if (isMessage)
    {
        mState = EState::kNone; // it breaks the one that is collected
        mEnd = mBegin;
    }
    if (isMessage || (first >= kFirstRealtime && mState == EState::kNone))
        AddShort(bytes, frame, ioPlugin);
    else
        for (const std::uint8_t byte : bytes)
            TakeByte(byte, frame, ioPlugin);
}

void CSysexInput::TakeByte(std::uint8_t inByte, std::int32_t inFrame, CVst2Plugin& ioPlugin)
{
    if (inByte >= kFirstRealtime)
        return AddShort({&inByte, 1}, inFrame, ioPlugin);
    if (inByte == kBegin)
    {
        mState = EState::kCollecting;
        mEnd = mBegin;
    }
    else if (inByte >= kFirstStatus && inByte != kEnd)
    {
        mState = EState::kDropping;
    }
    if (mState == EState::kCollecting)
        Collect(inByte, ioPlugin);
    if (inByte != kEnd)
        return;
    if (mState == EState::kCollecting)
        AddMessage(inFrame, ioPlugin);
    mState = EState::kNone;
    mEnd = mBegin;
}

void CSysexInput::Collect(std::uint8_t inByte, CVst2Plugin& ioPlugin)
{
    if (mEnd - mBegin == kMostBytes)
    {
        mState = EState::kDropping;
        return;
    }
    if (mEnd == mBytes.size())
        Flush(ioPlugin);
    mBytes[mEnd++] = inByte;
}

template <typename Event>
Event& CSysexInput::Add(std::int32_t inType, std::int32_t inFrame, std::vector<Event>& ioEvents,
                        CVst2Plugin& ioPlugin)
{
    if (static_cast<std::size_t>(mEvents.mNumEvents) == kMostEvents)
        Flush(ioPlugin);
    const auto place = static_cast<std::size_t>(mEvents.mNumEvents++);
    Event& event = ioEvents[place];
    event = {};
    event.type = inType;
    event.byteSize = sizeof(event);
    event.deltaFrames = inFrame;
    mEvents.mEvents[place] = reinterpret_cast<VstEvent*>(&event);
    return event;
}

void CSysexInput::AddShort(std::span<const std::uint8_t> inBytes, std::int32_t inFrame, CVst2Plugin& ioPlugin)
{
    VstMidiEvent& event = Add(kVstMidiType, inFrame, mShorts, ioPlugin);
    std::memcpy(event.midiData, inBytes.data(), inBytes.size());
}

void CSysexInput::AddMessage(std::int32_t inFrame, CVst2Plugin& ioPlugin)
{
    VstMidiSysexEvent& event = Add(kVstSysExType, inFrame, mMessages, ioPlugin);
    event.dumpBytes = static_cast<std::int32_t>(mEnd - mBegin);
    event.sysexDump = reinterpret_cast<char*>(mBytes.data() + mBegin);
    mBegin = mEnd;
}

void CSysexInput::Flush(CVst2Plugin& ioPlugin)
{
    if (mEvents.mNumEvents > 0)
        ioPlugin.ProcessEvents(reinterpret_cast<VstEvents*>(&mEvents));
    mEvents.mNumEvents = 0;
    std::copy(mBytes.begin() + static_cast<std::ptrdiff_t>(mBegin),
              mBytes.begin() + static_cast<std::ptrdiff_t>(mEnd), mBytes.begin());
    mEnd -= mBegin;
    mBegin = 0;
}
