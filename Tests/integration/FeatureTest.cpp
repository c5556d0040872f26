#include "Interfaces/VST2/HostQuestions.h"
#include "Tests/integration/FeatureRig.h"
#include "Tools/aaxhost/host/CHostMidiNode.h"
#include "Tools/aaxhost/player/InstanceState.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace
{
/** A list of events as a plug-in sends it. */
struct SEventList
{
    void Add(std::int32_t inFrame, std::array<std::uint8_t, 3> inBytes)
    {
        VstMidiEvent& event = mShorts.emplace_back();
        event.type = kVstMidiType;
        event.deltaFrames = inFrame;
        std::copy(inBytes.begin(), inBytes.end(), event.midiData);
        Append(&event);
    }
    void AddDump(std::int32_t inFrame, char* inBytes, std::size_t inSize)
    {
        VstMidiSysexEvent& event = mDumps.emplace_back();
        event = {kVstSysExType, sizeof(event), inFrame, 0, static_cast<std::int32_t>(inSize), 0, inBytes, 0};
        Append(&event);
    }
    void Append(void* inEvent) { mEvents.at(static_cast<std::size_t>(mCount++)) = inEvent; }
    void* Get() { return &mCount; }

    std::int32_t mCount = 0;
    VstIntPtr mReserved = 0;
    std::array<void*, 100000> mEvents{};
    std::deque<VstMidiEvent> mShorts; // whose events stay where they are
    std::deque<VstMidiSysexEvent> mDumps;
};

std::string Text(const AAX_CMidiPacket& inPacket)
{
    std::string text = fmt::format("{}:", inPacket.mTimestamp);
    for (std::uint32_t i = 0; i < inPacket.mLength; ++i)
        text += fmt::format("{:02x}", inPacket.mData[i]);
    const bool isClean = std::all_of(std::begin(inPacket.mData) + inPacket.mLength, std::end(inPacket.mData),
                                     [](std::uint8_t byte) { return byte == 0; });
    return text + (isClean ? " " : "+ ");
}

std::string Posted(SRig& ioRig)
{
    CHostMidiNode* const node = ioRig.mCall->FindNode(AAX_eMIDINodeType_LocalOutput);
    if (node == nullptr)
        return "no node";
    std::string text;
    for (const AAX_CMidiPacket& packet : node->Posted())
        text += Text(packet);
    return text;
}

// ---- What is seen of each feature, in words. Each gets a rig that is not open yet.

std::string SeeTime(SRig& ioRig)
{
    std::string seen;
    ioRig.InProcess(
        [&](ScriptedEffect& effect)
        {
            const auto& time = *reinterpret_cast<const VstTimeInfo*>(effect.CallHost(audioMasterGetTime));
            seen += fmt::format("{:x} {:.5f} {} {} {}/{} {}-{} {:.0f}; ", time.flags, time.ppqPos,
                                time.barStartPos, time.tempo, time.timeSigNumerator, time.timeSigDenominator,
                                time.cycleStartPos, time.cycleEndPos, time.nanoSeconds);
        });
    ioRig.Open();
    STransportState& transport = ioRig.Transport();
    transport.mTempo = 90.5;
    transport.mMeterNumerator = 3;
    transport.mSamplePosition = 48000 * 60; // 90.5 quarter notes
    transport.mLooping = true;
    transport.mLoopStartTick = 960000 * 4;
    transport.mLoopEndTick = 960000 * 8;
    ioRig.Render(480);
    ioRig.Render(1500); // in two parts
    transport.mPlaying = false;
    ioRig.Render(480);
    return seen;
}

std::string SeeLatency(SRig& ioRig)
{
    std::string seen;
    const auto look = [&]
    {
        ioRig.Beat();
        seen += fmt::format("{} ", ioRig.mInstance->Host().Controller().State().mSignalLatency);
    };
    std::int32_t latency = 4096;
    ioRig.InProcess([&](ScriptedEffect& effect)
                    { __atomic_store_n(&effect.Effect().initialDelay, latency, __ATOMIC_RELAXED); });
    ioRig.Open();
    ioRig.mLog.Clear();
    for (const std::int32_t value : {4096, 4096, 480001, -1, 64})
    {
        latency = value;
        ioRig.Render();
        look();
    }
    seen += fmt::format("told {} times, ", ioRig.mLog.Count("SetSignalLatency"));
    const auto state = Expect(TakeState(*ioRig.mModule, *ioRig.mInstance));
    ioRig.Effect().Effect().initialDelay = 96;
    (void)GiveState(*ioRig.mModule, *ioRig.mInstance, state); // what it gives back is for other tests
    return seen + std::to_string(ioRig.mInstance->Host().Controller().State().mSignalLatency);
}

std::string SeeAnswers(SRig& ioRig)
{
    std::string seen;
    const auto ask = [&seen](ScriptedEffect& effect, bool isRendering)
    {
        auto* const folder = reinterpret_cast<char*>(effect.CallHost(audioMasterGetDirectory));
        const SHostFacts facts{48000.0F, 1024, isRendering, folder};
        std::size_t answered = 0;
        for (const std::int32_t opcode : kHostQuestions)
        {
            char word[64] = "offline";
            const VstIntPtr answer = effect.CallHost(opcode, 0, word);
            const auto expected = AnswerQuestion({EHostCaller::kLoaded, opcode, 0, 0, word, 0.0F}, facts);
            answered += answer != 0 && answer == expected ? 1 : 0;
        }
        seen += answered == std::size(kHostQuestions) ? "all" : answered == 0 ? "none" : "some";
        seen += folder != nullptr
                    ? " in " + std::filesystem::path(folder).parent_path().filename().string() + "; "
                    : "; ";
    };
    ioRig.InProcess([&](ScriptedEffect& effect) { ask(effect, true); });
    ioRig.Script().mHooks[effClose] = [&](ScriptedEffect& effect, const SDispatch&)
    { seen += effect.CallHost(audioMasterGetDirectory) != 0 ? "still there; " : "gone; "; };
    ioRig.Open();
    ioRig.Render();
    ask(ioRig.Effect(), false);
    ioRig.mInstance.reset();
    for (const std::string& line : ioRig.Script().TakeLog())
        if (line.starts_with("effMains") || line.starts_with("effSt"))
            seen += line + ", ";
    return seen;
}

std::string SeeIdle(SRig& ioRig)
{
    int calls = 0;
    ioRig.Script().mHooks[effIdle] = [&](ScriptedEffect&, const SDispatch&)
    { ioRig.Script().mResults[effIdle] = ++calls < 3 ? 1 : 0; };
    ioRig.Script().mHooks[effOpen] = [](ScriptedEffect& effect, const SDispatch&)
    { (void)effect.CallHost(audioMasterNeedIdle); };
    ioRig.Open();
    for (int i = 0; i < 10; ++i)
        ioRig.Beat();
    std::string seen = fmt::format("{} calls", calls);
    (void)ioRig.Effect().CallHost(audioMasterNeedIdle);
    ioRig.Beat();
    return seen + fmt::format(", then {}", calls);
}

std::string SeeResize(SRig& ioRig)
{
    ioRig.Script().mEditorSize = {0, 0, 100, 200};
    ioRig.Open();
    Expect(ioRig.mInstance->OpenGUI());
    AAX_IACFEffectGUI& gui = *ioRig.mInstance->GUI();
    CHostViewContainer& container = ioRig.mInstance->Host().ViewContainer();
    int view = 0;
    container.SetView(1, &view);
    (void)gui.SetViewContainer(&container); // a plug-in without a window system
    std::string seen;
    const auto look = [&](VstIntPtr answer)
    {
        AAX_Point size{};
        (void)gui.GetViewSize(&size);
        seen += fmt::format("{} {}x{} by {}; ", answer, size.mHorizontal, size.mVertical,
                            ioRig.mLog.Count("SetViewSize"));
    };
    const auto ask = [&](std::int32_t width, VstIntPtr height)
    { return ioRig.Effect().CallHost(audioMasterSizeWindow, width, nullptr, 0.0F, height); };
    look(ask(640, 480));
    ioRig.mLog.FailCall("SetViewSize", 1, -1);
    look(ask(700, 500));
    for (const auto& [width, height] : {std::pair{0, 480LL}, {-1, 480LL}, {640, 100000LL}})
        look(ask(width, height));
    VstIntPtr answer = 0;
    std::thread([&] { answer = ask(320, 240); }).join();
    look(answer);
    (void)gui.TimerWakeup();
    look(answer);
    ioRig.Script().mEditorSize = {0, 0, 50, 60}; // by itself
    (void)gui.TimerWakeup();
    (void)gui.TimerWakeup();
    look(0);
    (void)gui.SetViewContainer(nullptr); // as hosts end it
    look(ask(640, 480));
    ioRig.mInstance->CloseGUI();
    return seen;
}

std::string SeeMidiOutput(SRig& ioRig)
{
    const auto list = std::make_unique<SEventList>();
    char dump[] = "\xF0\x01\x02\x03\x04\xF7";
    list->Add(70, {0x80, 60, 0}); // behind the block
    list->Add(8, {0x90, 61, 100});
    list->AddDump(8, dump, 6);
    list->Add(8, {0xC0, 5, 99}); // of two bytes
    list->Add(-5, {0x90, 62, 100});
    list->Add(3, {0x10, 0, 0}); // none
    list->AddDump(9, dump, 0);
    list->AddDump(9, nullptr, 6);
    const auto waiting = std::make_unique<SEventList>();
    waiting->Add(2, {0xB0, 1, 2});
    const auto later = std::make_unique<SEventList>(); // than this block, though sent while it is rendered
    later->Add(2, {0xB0, 1, 3});
    const auto sendElsewhere = [&](SEventList& events) {
        std::thread([&] { (void)ioRig.Effect().CallHost(audioMasterProcessEvents, 0, events.Get()); }).join();
    };
    ioRig.InProcess(
        [&](ScriptedEffect& effect)
        {
            (void)effect.CallHost(audioMasterProcessEvents, 0, list->Get());
            sendElsewhere(*later);
        });
    ioRig.Open();
    sendElsewhere(*waiting);
    ioRig.Render();
    return Posted(ioRig);
}

std::string SeeSysex(SRig& ioRig)
{
    std::string seen;
    ioRig.Script().mHooks[effProcessEvents] = [&](ScriptedEffect&, const SDispatch& call)
    {
        const auto& list = *static_cast<const VstEvents*>(call.mPointer);
        for (std::int32_t i = 0; i < list.numEvents; ++i)
        {
            const VstEvent& event = *(&list.events[0])[i];
            seen += fmt::format("{}:", event.deltaFrames);
            const bool isDump = event.type == kVstSysExType;
            const auto& dump = reinterpret_cast<const VstMidiSysexEvent&>(event);
            const char* const bytes =
                isDump ? dump.sysexDump : reinterpret_cast<const VstMidiEvent&>(event).midiData;
            for (std::int32_t k = 0; k < (isDump ? dump.dumpBytes : 3); ++k)
                seen += fmt::format("{:02x}", static_cast<unsigned char>(bytes[k]));
            seen += isDump ? "! " : " ";
        }
        seen += "| ";
    };
    ioRig.Open();
    using Packet = std::vector<std::uint8_t>;
    const std::vector<std::vector<Packet>> blocks = {
        {{0x90, 60, 100}, {0xF0, 1, 2, 3}, {0xF8}, {4, 5, 6, 0xF7}, {0x80, 60, 0}}, // a clock in between
        {{0xF0, 7, 8, 9}},                                                          // goes on ...
        {{10, 0xFE, 11, 0xF7}},                      // ... in the next block, with a realtime byte inside
        {{0xF0, 1, 2, 3}, {0x90, 61, 1}, {4, 0xF7}}, // broken by a note
        {{0xF0, 1, 0x90, 2}, {3, 0xF7}, {0x90, 62, 1}},
        {{0xF0, 0xF7}}};
    for (const std::vector<Packet>& packets : blocks)
    {
        CHostMidiNode& node = *ioRig.mCall->FindNode(AAX_eMIDINodeType_LocalInput);
        std::uint32_t frame = 0;
        for (const Packet& packet : packets)
            node.Add(frame++, packet);
        ioRig.Render();
    }
    return seen;
}

std::string SeeProgramFirst(SRig& ioRig)
{
    ioRig.Open();
    const auto state = Expect(TakeState(*ioRig.mModule, *ioRig.mInstance));
    (void)ioRig.Script().TakeLog(); // of what came before
    (void)GiveState(*ioRig.mModule, *ioRig.mInstance, state);
    std::string seen;
    for (const std::string& line : ioRig.Script().TakeLog())
        if (line.starts_with("effSet"))
            seen += line + ", ";
    return seen;
}

// The first word of HOST_ANSWERS is from the description, whose plug-in belongs to no instance. Flags of the
// time record: 1 changed, 2 playing, 4 looping, 0x100 to 0x2000 what is valid.
const SFeatureRow kPluginSideRows[] = {
    {"TIME", &SeeTime,
     "3f07 90.50000 90 90.5 3/4 4-8 0; 3f06 90.51508 90 90.5 3/4 4-8 10000000; "
     "3f06 90.54726 90 90.5 3/4 4-8 31333333; 3f05 90.56222 90 90.5 3/4 4-8 41250000; ",
     "2 2.50000 0 90.5 4/4 0-0 0; 2 2.51508 0 90.5 4/4 0-0 0; "
     "2 2.54726 0 90.5 4/4 0-0 0; 0 2.56222 0 90.5 4/4 0-0 0; "},
    {"LATENCY", &SeeLatency, "4096 4096 0 0 64 told 3 times, 96", "0 0 0 0 0 told 0 times, 0"},
    {"HOST_ANSWERS", &SeeAnswers,
     "gone; all in Resources; all in Resources; still there; "
     "effMainsChanged 0, effMainsChanged 1, effMainsChanged 1, effStartProcess, effStopProcess, "
     "effMainsChanged 0, ",
     "gone; none; none; gone; "
     "effMainsChanged 0, effMainsChanged 1, effMainsChanged 1, effMainsChanged 0, "},
    {"IDLE", &SeeIdle, "3 calls, then 4", "0 calls, then 0"},
    {"RESIZE", &SeeResize,
     "1 640x480 by 1; 0 640x480 by 2; 0 640x480 by 2; 0 640x480 by 2; 0 640x480 by 2; 0 640x480 by 2; "
     "0 320x240 by 3; 0 60x50 by 4; 0 60x50 by 4; ",
     "0 200x100 by 0; 0 200x100 by 0; 0 200x100 by 0; 0 200x100 by 0; 0 200x100 by 0; 0 200x100 by 0; "
     "0 200x100 by 0; 0 60x50 by 0; 0 60x50 by 0; "},
    {"MIDI_OUTPUT", &SeeMidiOutput, "0:903e64 2:b00102 8:903d64 8:f0010203 8:04f7 8:c005 63:803c00 ",
     "no node"},
    {"SYSEX", &SeeSysex,
     "0:903c64 2:f80000 3:f0010203040506f7! 4:803c00 | 0:fe0000 0:f00708090a0bf7! | 1:903d01 | "
     "2:903e01 | 0:f0f7! | ",
     "0:903c64 1:f00102 2:f80000 3:040506 4:803c00 | 0:f00708 | 0:0afe0b | 0:f00102 1:903d01 2:04f700 | "
     "0:f00190 1:03f700 2:903e01 | 0:f0f700 | "},
    {"PROGRAM_FIRST", &SeeProgramFirst, "effSetProgram 0, effSetChunk 0, ",
     "effSetChunk 0, effSetProgram 0, "},
};

TEST(Features, OfThePluginsSideWorkAloneAndAmongAll) { ExpectRows(kPluginSideRows); }

TEST(Features, TheOtherFeaturesAreWhatAHostSaysThatItCanDo)
{
    for (const auto& [product, answer] : {std::pair("HOST_ANSWERS", -1), {"ALL", 1}})
    {
        SRig rig(ModuleWith(product));
        rig.Open();
        for (std::string word : {"receiveVstMidiEvent", "sizeWindow", "supplyIdle"})
            EXPECT_EQ(rig.Effect().CallHost(audioMasterCanDo, 0, word.data()), answer) << product << word;
    }
}
} // namespace

std::span<const SFeatureRow> PluginSideRows() { return kPluginSideRows; }
