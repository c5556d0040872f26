#include "Source/features/CMidiOutput.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CHostMidiNode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <thread>
#include <vector>

namespace
{
/** A plug-in's list of events, all of one kind. */
class CEvents
{
public:
    /** Notes whose second byte counts up, at frames that fall. */
    static CEvents Notes(std::int32_t inCount)
    {
        CEvents events(inCount);
        events.mNotes.resize(static_cast<std::size_t>(inCount));
        for (std::int32_t i = 0; i < inCount; ++i)
        {
            VstMidiEvent& event = events.mNotes[static_cast<std::size_t>(i)];
            event.type = kVstMidiType;
            event.deltaFrames = inCount - i;
            event.midiData[0] = static_cast<char>(0x90);
            event.midiData[1] = static_cast<char>(i % 128);
            events.mWords[static_cast<std::size_t>(2 + i)] = reinterpret_cast<VstIntPtr>(&event);
        }
        return events;
    }
    static CEvents Dump(std::size_t inBytes)
    {
        CEvents events(1);
        events.mBytes.assign(inBytes, 1);
        events.mBytes.front() = static_cast<char>(0xF0);
        events.mBytes.back() = static_cast<char>(0xF7);
        events.mDump.resize(1);
        events.mDump[0] = {kVstSysExType,
                           sizeof(VstMidiSysexEvent),
                           0,
                           0,
                           static_cast<std::int32_t>(inBytes),
                           0,
                           events.mBytes.data(),
                           0};
        events.mWords[2] = reinterpret_cast<VstIntPtr>(events.mDump.data());
        return events;
    }
    const VstEvents& Get() const { return *reinterpret_cast<const VstEvents*>(mWords.data()); }

private:
    explicit CEvents(std::int32_t inCount) : mWords(static_cast<std::size_t>(inCount) + 2)
    {
        mWords[0] = inCount;
    }

    std::vector<VstIntPtr> mWords; // the list: count, reserved, pointers
    std::vector<VstMidiEvent> mNotes;
    std::vector<VstMidiSysexEvent> mDump;
    std::vector<char> mBytes;
};

class MidiOutput : public testing::Test
{
protected:
    MidiOutput() { mOutput.Prepare(); }
    const std::vector<AAX_CMidiPacket>& Post()
    {
        mOutput.Post(&mNode);
        return mNode.Posted();
    }

    CHostLog mLog;
    CHostMidiNode mNode{mLog};
    CMidiOutput mOutput;
};

TEST_F(MidiOutput, OfMoreThanThereIsRoomForTheOldestAreKeptInOrder)
{
    constexpr std::int32_t kSent = 100000;
    const CEvents notes = CEvents::Notes(kSent);
    mOutput.BeginBlock(512);
    mOutput.Take(notes.Get());
    const auto& posted = Post();
    ASSERT_EQ(posted.size(), CMidiOutput::kMostMessages);
    EXPECT_EQ(mOutput.LostMessages(), kSent - CMidiOutput::kMostMessages);
    EXPECT_TRUE(std::ranges::is_sorted(posted, {}, &AAX_CMidiPacket::mTimestamp));
    EXPECT_EQ(posted.back().mTimestamp, 511U); // their frames are far behind the block
    for (std::size_t i = 0; i < posted.size(); ++i)
        ASSERT_EQ(posted[i].mData[1], i % 128) << "of one frame the first to be sent goes first";
}

TEST_F(MidiOutput, ADumpGoesWholeOrNotAtAll)
{
    struct SRow
    {
        std::size_t mBytes;
        std::size_t mPackets;
        bool mAtOtherTimes;
    };
    for (const SRow& row : {SRow{2, 1, false}, SRow{65536, 16384, false}, SRow{1 << 20, 0, false},
                            SRow{60000, 15000, true}, SRow{1 << 20, 0, true}})
    {
        SCOPED_TRACE(row.mBytes);
        CHostMidiNode node(mLog);
        const CEvents dump = CEvents::Dump(row.mBytes);
        const std::uint64_t lost = mOutput.LostMessages();
        if (row.mAtOtherTimes)
            std::thread([&] { mOutput.Wait(dump.Get()); }).join();
        mOutput.BeginBlock(64);
        if (!row.mAtOtherTimes)
            mOutput.Take(dump.Get());
        mOutput.Post(&node);
        EXPECT_EQ(node.Posted().size(), row.mPackets);
        EXPECT_EQ(mOutput.LostMessages() - lost, row.mPackets == 0 ? 1U : 0U);
        if (row.mPackets > 0)
        {
            const AAX_CMidiPacket& last = node.Posted().back();
            EXPECT_EQ(last.mData[last.mLength - 1], 0xF7);
        }
    }
}

TEST_F(MidiOutput, WhatWaitsKeepsItsOrderOverManyBlocksAndThreads)
{
    constexpr int kRounds = 2000;
    std::thread sender(
        [&]
        {
            for (int i = 0; i < kRounds; ++i)
            {
                const CEvents note = CEvents::Notes(1);
                const_cast<VstMidiEvent*>(reinterpret_cast<const VstMidiEvent*>(note.Get().events[0]))
                    ->midiData[2] = static_cast<char>(i % 128);
                mOutput.Wait(note.Get());
            }
        });
    const auto render = [&]
    {
        mOutput.BeginBlock(64);
        mOutput.Post(&mNode);
    };
    while (mNode.Posted().size() + mOutput.LostMessages() < kRounds)
        render();
    sender.join();
    render();
    EXPECT_EQ(mOutput.LostMessages(), 0U);
    ASSERT_EQ(mNode.Posted().size(), std::size_t{kRounds});
    for (std::size_t i = 0; i < mNode.Posted().size(); ++i)
        ASSERT_EQ(mNode.Posted()[i].mData[2], i % 128);
}

TEST_F(MidiOutput, ANodeThatIsFullEndsTheMessage)
{
    mLog.FailCall("PostMIDIPacket", 2, -1);
    const CEvents dump = CEvents::Dump(40);
    mOutput.BeginBlock(64);
    mOutput.Take(dump.Get());
    EXPECT_EQ(Post().size(), 1U);
    EXPECT_EQ(mOutput.LostMessages(), 1U);
}
} // namespace
