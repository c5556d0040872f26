#include "Tests/unit/Source/plugins/LoadedPlugin.h"

#include <algorithm>
#include <cstring>

namespace
{
class PluginMidi : public LoadedPlugin
{
protected:
    void SetUp() override
    {
        mModule.Script().mResults[effCanDo] = 1;
        mPlugin = &Load();
    }
    CVst2Plugin* mPlugin = nullptr;
};

TEST_F(PluginMidi, PackedMessagesBecomeWholeEventRecords)
{
    unsigned long messages[] = {0xDEADBEEF00643C90UL, 0x00003C80UL};
    unsigned long offsets[] = {7, 500};
    mPlugin->ProcessEvents(2, messages, offsets);
    mPlugin->ProcessEvents(1, messages, nullptr);
    ASSERT_EQ(Script().mEvents.size(), 2U);
    ASSERT_EQ(Script().mEvents[0].size(), 2U);
    VstMidiEvent expected{};
    expected.type = 1;
    expected.byteSize = 32;
    expected.deltaFrames = 7;
    expected.midiData[0] = static_cast<char>(0x90);
    expected.midiData[1] = 0x3C;
    expected.midiData[2] = 0x64;
    EXPECT_EQ(std::memcmp(&Script().mEvents[0][0], &expected, sizeof(expected)), 0);
    EXPECT_EQ(Script().mEvents[0][1].deltaFrames, 500);
    ASSERT_EQ(Script().mEvents[1].size(), 1U);
    EXPECT_EQ(Script().mEvents[1][0].deltaFrames, 0); // nothing left of the call before
}

TEST_F(PluginMidi, RecordsHoldThreeHundredAndTheCountIsPassedOn)
{
    std::vector<unsigned long> messages(301);
    for (std::size_t i = 0; i < messages.size(); ++i)
        messages[i] = i;
    for (const long count : {300L, 301L})
    {
        SCOPED_TRACE(count);
        std::int32_t told = 0;
        Script().mHooks[effProcessEvents] = [&told](ScriptedEffect&, const SDispatch& inCall)
        { told = static_cast<const VstEvents*>(inCall.mPointer)->numEvents; };
        mPlugin->ProcessEvents(count, messages.data(), nullptr);
        EXPECT_EQ(told, count);
        ASSERT_EQ(Script().mEvents.back().size(), 300U);
        EXPECT_EQ(std::memcmp(Script().mEvents.back()[299].midiData, &messages[299], 4), 0);
    }
}

TEST_F(PluginMidi, PluginThatReordersAndOverwritesTheRecordsGetsTheNextOnesRight)
{
    Script().mHooks[effProcessEvents] = [](ScriptedEffect&, const SDispatch& inCall)
    {
        VstEvent** const list = static_cast<VstEvents*>(inCall.mPointer)->events;
        std::swap(list[0], list[1]);
        reinterpret_cast<VstMidiEvent*>(list[0])->type = 99;
        reinterpret_cast<VstMidiEvent*>(list[0])->detune = 9;
    };
    unsigned long messages[] = {1, 2};
    mPlugin->ProcessEvents(2, messages, nullptr);
    Script().mHooks.clear();
    mPlugin->ProcessEvents(2, messages, nullptr);
    ASSERT_EQ(Script().mEvents.size(), 2U);
    for (const std::size_t i : {0U, 1U})
    {
        EXPECT_EQ(Script().mEvents[1][i].midiData[0], static_cast<char>(i + 1));
        EXPECT_EQ(Script().mEvents[1][i].type, 1);
        EXPECT_EQ(Script().mEvents[1][i].detune, 0);
    }
}

TEST_F(PluginMidi, NothingIsSentForEmptyCallsOrToAPluginWithoutMidi)
{
    unsigned long message = 0x90;
    VstEvents none{};
    mPlugin->ProcessEvents(0, &message, nullptr);
    mPlugin->ProcessEvents(&none);
    mPlugin->ProcessEvents(std::span<const SMidiMsg>());

    Script().mResults[effCanDo] = -1;
    CVst2Plugin* const deaf = mHost.LoadPlugin(mModule.Path());
    ASSERT_NE(deaf, nullptr);
    (void)Script().TakeLog(); // what loading sent
    VstEvents one{};
    one.numEvents = 1;
    const SMidiMsg toAll{};
    deaf->ProcessEvents(1, &message, nullptr);
    deaf->ProcessEvents(&one);
    deaf->ProcessEvents(std::span(&toAll, 1));
    EXPECT_TRUE(Script().TakeLog().empty());
}

TEST_F(PluginMidi, ListReachesOnlyItsTargetAndNothingBehindThe300thIsLookedAt)
{
    struct SRow
    {
        const char* mWhat;
        std::vector<long> mTargets;
        std::vector<int> mDelivered; // places in the list
    };
    std::vector<long> foreign(400, 8);
    std::fill(foreign.begin() + 300, foreign.end(), 7);
    std::vector<long> lastExamined(400, 8);
    lastExamined[299] = 7;
    lastExamined[300] = 7;
    mPlugin->SetMasterIndex(7);
    for (const SRow& row :
         {SRow{"mixed", {-1, 7, 8, -5, 0}, {0, 1, 3}}, SRow{"behind 300 foreign ones", foreign, {}},
          SRow{"the 300th", lastExamined, {299}}})
    {
        SCOPED_TRACE(row.mWhat);
        std::vector<SMidiMsg> list;
        for (const long target : row.mTargets)
        {
            const auto number = static_cast<std::uint32_t>(list.size());
            SMidiMsg message{{0x90, 0, 0, 0}, target};
            std::memcpy(message.mMidiBytes.data(), &number, sizeof(number));
            list.push_back(message);
        }
        Script().mEvents.clear();
        mHost.ProcessEvents(list);
        std::vector<int> delivered;
        for (const auto& block : Script().mEvents)
        {
            for (const VstMidiEvent& event : block)
            {
                int number = 0;
                std::memcpy(&number, event.midiData, sizeof(number));
                delivered.push_back(number);
                EXPECT_EQ(event.deltaFrames, 0);
            }
        }
        EXPECT_EQ(delivered, row.mDelivered);
        EXPECT_EQ(Script().mEvents.size(), row.mDelivered.empty() ? 0U : 1U);
    }
}
} // namespace
