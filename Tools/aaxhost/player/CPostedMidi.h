#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

struct AAX_CMidiPacket;
class CHostMidiNode;

/** A whole message at its time; a system exclusive one from F0 to F7, at the time of its last packet. */
struct SMidiMessage
{
    double mSeconds = 0.0;
    std::vector<std::uint8_t> mBytes; // status byte first
};

/** What a module posts to its output node while it is rendered, put together to whole messages; and what of
 * it a host would misplay. */
class CPostedMidi
{
public:
    explicit CPostedMidi(double inRate) : mRate(inRate) {}

    /** Takes what was posted in the last block, which began at this frame of the file. Messages that lie
     * outside of the block are moved to its last frame. */
    void TakeBlock(const CHostMidiNode& inNode, std::int64_t inStart, std::int32_t inFrames);
    /** The last block was taken: what is not whole by now is broken. */
    void Finish();

    /** In the order of their times. */
    const std::vector<SMidiMessage>& Messages() const noexcept { return mMessages; }
    /** Messages that a MIDI file has no place for: clock, song position and the like. */
    std::size_t LeftOut() const noexcept { return mLeftOut; }
    /** What a host would misplay, in a sentence; empty where all is well. */
    std::string Fault() const;

private:
    enum EFault
    {
        kOutsideOfBlock,
        kBadLength,
        kOutOfOrder,
        kNoMessage,
        kBrokenExclusive,
        kRefused,
        kFaultCount
    };

    void Take(double inSeconds, std::span<const std::uint8_t> inBytes);
    void TakeExclusive(double inSeconds, std::span<const std::uint8_t> inBytes);
    void TakeChannelMessage(double inSeconds, std::span<const std::uint8_t> inBytes);
    void BreakExclusive();
    void Note(EFault inFault, double inSeconds, std::size_t inCount = 1);

    double mRate; // frames in a second
    std::vector<SMidiMessage> mMessages;
    SMidiMessage mExclusive; // as far as it came; no byte: there is none
    std::size_t mLeftOut = 0;
    std::array<std::size_t, kFaultCount> mFaults{};
    double mFirstFault = -1.0; // seconds
};
