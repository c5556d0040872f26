#include "Tools/aaxhost/player/CPostedMidi.h"

#include "Tools/aaxhost/host/CHostMidiNode.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

namespace
{
constexpr std::uint8_t kExclusiveBegin = 0xF0;
constexpr std::uint8_t kExclusiveEnd = 0xF7;
constexpr std::uint8_t kFirstRealTime = 0xF8;

bool IsData(std::uint8_t inByte) { return inByte < 0x80; }
} // namespace

void CPostedMidi::TakeBlock(const CHostMidiNode& inNode, std::int64_t inStart, std::int32_t inFrames)
{
    const auto secondsAt = [&](std::int64_t frame) { return static_cast<double>(inStart + frame) / mRate; };
    const auto frames = static_cast<std::uint32_t>(inFrames);
    const std::size_t before = mMessages.size();
    std::uint32_t last = 0;
    for (const AAX_CMidiPacket& packet : inNode.Posted())
    {
        const double seconds = secondsAt(std::min(packet.mTimestamp, frames - 1));
        if (packet.mTimestamp >= frames)
            Note(kOutsideOfBlock, seconds);
        if (packet.mTimestamp < last)
            Note(kOutOfOrder, seconds);
        last = packet.mTimestamp;
        if (packet.mLength == 0 || packet.mLength > sizeof(packet.mData))
            Note(kBadLength, seconds);
        else
            Take(seconds, std::span(packet.mData).first(packet.mLength));
    }
    if (inNode.Refused() > 0)
        Note(kRefused, secondsAt(0), inNode.Refused());
    std::stable_sort(mMessages.begin() + static_cast<std::ptrdiff_t>(before), mMessages.end(),
                     [](const SMidiMessage& a, const SMidiMessage& b) { return a.mSeconds < b.mSeconds; });
}

void CPostedMidi::Finish()
{
    if (!mExclusive.mBytes.empty())
        BreakExclusive();
}

void CPostedMidi::Take(double inSeconds, std::span<const std::uint8_t> inBytes)
{
    const std::uint8_t first = inBytes.front();
    if (first >= kFirstRealTime) // may stand inside of a system exclusive message
    {
        ++mLeftOut;
        return;
    }
    const bool goesOn = !mExclusive.mBytes.empty() && (IsData(first) || first == kExclusiveEnd);
    if (!mExclusive.mBytes.empty() && !goesOn)
        BreakExclusive();
    if (goesOn || first == kExclusiveBegin)
        TakeExclusive(inSeconds, inBytes);
    else if (first > kExclusiveBegin && first != kExclusiveEnd)
        ++mLeftOut;
    else
        TakeChannelMessage(inSeconds, inBytes);
}

void CPostedMidi::TakeExclusive(double inSeconds, std::span<const std::uint8_t> inBytes)
{
    mExclusive.mSeconds = inSeconds;
    for (std::size_t i = 0; i < inBytes.size(); ++i)
    {
        const bool isFirst = mExclusive.mBytes.empty();
        const bool isLast = inBytes[i] == kExclusiveEnd && i + 1 == inBytes.size();
        mExclusive.mBytes.push_back(inBytes[i]);
        if (isLast)
            mMessages.push_back(std::exchange(mExclusive, {}));
        else if (!isFirst && !IsData(inBytes[i]))
            return BreakExclusive();
    }
}

void CPostedMidi::TakeChannelMessage(double inSeconds, std::span<const std::uint8_t> inBytes)
{
    const int kind = inBytes.front() & 0xF0;
    const std::size_t length = kind == 0xC0 || kind == 0xD0 ? 2 : 3;
    const bool isWhole = !IsData(inBytes.front()) && inBytes.front() < kExclusiveBegin &&
                         inBytes.size() == length && std::ranges::all_of(inBytes.subspan(1), IsData);
    if (isWhole)
        mMessages.push_back({inSeconds, {inBytes.begin(), inBytes.end()}});
    else
        Note(kNoMessage, inSeconds);
}

void CPostedMidi::BreakExclusive()
{
    Note(kBrokenExclusive, mExclusive.mSeconds);
    mExclusive = {};
}

void CPostedMidi::Note(EFault inFault, double inSeconds, std::size_t inCount)
{
    if (mFirstFault < 0.0)
        mFirstFault = inSeconds;
    mFaults[inFault] += inCount;
}

std::string CPostedMidi::Fault() const
{
    constexpr const char* words[] = {"packets outside of their block",
                                     "packets of no or more than 4 bytes",
                                     "packets out of order",
                                     "packets that are no whole message",
                                     "system exclusive messages that do not end",
                                     "packets that found no room in their block"};
    static_assert(std::size(words) == kFaultCount);
    std::string list;
    for (std::size_t i = 0; i < kFaultCount; ++i)
        if (mFaults[i] > 0)
            list += fmt::format("{} {}: {}", list.empty() ? "" : ",", words[i], mFaults[i]);
    if (list.empty())
        return {};
    return fmt::format("A host would misplay the module's MIDI output, first at {:.3f} seconds:{}.",
                       mFirstFault, list);
}
