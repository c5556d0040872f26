#include "Tests/doubles/ScriptedModule.h"
#include "Tests/integration/HostedModule.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tools/aaxhost/host/CHostMidiNode.h"
#include "Tools/aaxhost/host/CHostString.h"
#include "Tools/aaxhost/player/InstanceState.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace
{
namespace fs = std::filesystem;

/** The product that has one feature, or ALL of them. */
fs::path ModuleWith(const std::string& inFeature)
{
    const fs::path& all = kAllFeaturesModule;
    const std::string name = "Feature_" + inFeature;
    const fs::path modules = all.parent_path().parent_path().parent_path().parent_path();
    return modules / (name + ".aaxplugin") / "Contents" / all.parent_path().filename() / (name + ".so");
}

/** A scripted plug-in with two inputs and outputs, in a module and a host. */
struct SRig
{
    explicit SRig(const fs::path& inModule) : mBundle(inModule, ScriptedModule::FileOf("scripted_plugin.so"))
    {
        Script().shape.numInputs = Script().shape.numOutputs = 2;
        Script().shape.flags = effFlagsHasEditor | effFlagsProgramChunks;
        Script().shape.numPrograms = 4;
        Script().results[effCanDo] = 1;
        Script().bankChunk = {1, 2, 3};
    }
    ~SRig()
    {
        mCall.reset();
        mInstance.reset();
    }
    SPluginScript& Script() { return mScript.Script(); }
    ScriptedEffect& Effect() { return *Script().instances.back(); }
    void Open()
    {
        mModule = Expect(CModule::Open(mBundle.Path().string(), mLog));
        mInstance = Expect(CInstance::Create(*mModule, kHostedRate));
        mCall = mInstance->MakeRenderCall();
        mCall->mFrames = 64;
        Transport().mPlaying = true;
    }
    STransportState& Transport() { return mInstance->Host().Transport().State(); }
    /** A block, and what a host does between two on its main thread. */
    void Render(std::int32_t inFrames = 64)
    {
        mCall->mFrames = inFrames;
        mInstance->Render(*mCall);
        Transport().mSamplePosition += inFrames;
        mCall->mClock += inFrames;
        if (CHostMidiNode* const node = mCall->FindNode(AAX_eMIDINodeType_LocalInput))
            node->Clear();
    }
    void Beat() { (void)mInstance->Parameters().TimerWakeup(); }
    /** What a plug-in does while it renders. */
    void InProcess(std::function<void(ScriptedEffect&)> inDo)
    {
        Script().onProcess = [inDo](ScriptedEffect& effect, float**, float**, std::int32_t) { inDo(effect); };
    }

    const CModuleBundle mBundle;
    ScriptedModule mScript{mBundle.SourceVst()};
    CHostLog mLog;
    std::unique_ptr<CModule> mModule;
    std::unique_ptr<CInstance> mInstance;
    std::unique_ptr<SRenderCall> mCall;
};

/** A list of events as a plug-in sends it. */
struct SEventList
{
    void Add(std::int32_t inFrame, std::array<std::uint8_t, 3> inBytes)
    {
        VstMidiEvent& event = mShorts.at(mShortCount++);
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
    std::vector<VstMidiEvent> mShorts = std::vector<VstMidiEvent>(100000);
    std::size_t mShortCount = 0;
    std::vector<VstMidiSysexEvent> mDumps = []
    {
        std::vector<VstMidiSysexEvent> dumps;
        dumps.reserve(8);
        return dumps;
    }();
};

std::string Text(const AAX_CMidiPacket& inPacket)
{
    std::string text = fmt::format("{}:", inPacket.mTimestamp);
    for (std::uint32_t i = 0; i < inPacket.mLength; ++i)
        text += fmt::format("{:02x}", inPacket.mData[i]);
    return text + " ";
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
    const auto ask = [&seen](ScriptedEffect& effect)
    {
        for (const std::int32_t opcode :
             {audioMasterGetSampleRate, audioMasterGetBlockSize, audioMasterGetCurrentProcessLevel,
              audioMasterGetAutomationState, audioMasterGetLanguage})
            seen += fmt::format("{} ", effect.CallHost(opcode));
        for (const char* text : {"sendVstMidiEvent", "offline", "no such text"})
        {
            std::string question = text;
            seen += fmt::format("{} ", effect.CallHost(audioMasterCanDo, 0, question.data()));
        }
        const auto* const folder = reinterpret_cast<const char*>(effect.CallHost(audioMasterGetDirectory));
        seen += folder != nullptr ? fs::path(folder).parent_path().filename().string() : "nowhere";
        seen += "; ";
    };
    ioRig.InProcess(ask);
    ioRig.Script().hooks[effClose] = [&](ScriptedEffect& effect, const SDispatch&)
    { seen += effect.CallHost(audioMasterGetDirectory) != 0 ? "still there; " : "gone; "; };
    ioRig.Open();
    ioRig.Render();
    ask(ioRig.Effect());
    ioRig.mInstance.reset();
    for (const std::string& line : ioRig.Script().TakeLog())
        if (line.starts_with("effMains") || line.starts_with("effSt"))
            seen += line + ", ";
    return seen;
}

std::string SeeIdle(SRig& ioRig)
{
    int calls = 0;
    ioRig.Script().hooks[effIdle] = [&](ScriptedEffect&, const SDispatch&)
    { ioRig.Script().results[effIdle] = ++calls < 3 ? 1 : 0; };
    ioRig.Script().hooks[effOpen] = [](ScriptedEffect& effect, const SDispatch&)
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
    ioRig.Script().editorSize = {0, 0, 100, 200};
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
    ioRig.Script().editorSize = {0, 0, 50, 60}; // by itself
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
    ioRig.InProcess([&](ScriptedEffect& effect)
                    { (void)effect.CallHost(audioMasterProcessEvents, 0, list->Get()); });
    ioRig.Open();
    std::thread([&] { (void)ioRig.Effect().CallHost(audioMasterProcessEvents, 0, waiting->Get()); }).join();
    ioRig.Render();
    return Posted(ioRig);
}

std::string SeeSysex(SRig& ioRig)
{
    std::string seen;
    ioRig.Script().hooks[effProcessEvents] = [&](ScriptedEffect&, const SDispatch& call)
    {
        const auto& list = *static_cast<const VstEvents*>(call.pointer);
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

std::string SeeParameterSync(SRig& ioRig)
{
    ioRig.Script().parameters = {0.25F, 0.5F};
    ioRig.Open();
    auto& parameters = ioRig.mInstance->Parameters();
    std::string seen;
    const auto look = [&](const char* id)
    {
        double value = -1.0;
        std::int32_t changes = -1;
        (void)parameters.GetParameterNormalizedValue(id, &value);
        (void)parameters.GetNumberOfChanges(&changes);
        seen += fmt::format("{:.3g} by {}; ", value, changes);
    };
    for (const auto& [id, value] : {std::pair("00000", 1.0), {"MasterBypassID", 1.0}, {"Gain", 0.5}})
    {
        EXPECT_EQ(ioRig.mInstance->UpdateParameter(id, value), kAAX_Success);
        look(id);
    }
    EXPECT_EQ(parameters.GenerateCoefficients(), kAAX_Success);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(parameters.UpdateParameterNormalizedRelative("00001", 0.125), kAAX_Success);
    look("00001");
    ioRig.Effect().Parameters()[1] = 0.25F; // by a person at its editor
    (void)ioRig.Effect().CallHost(audioMasterAutomate, 1, nullptr, 0.25F);
    look("00001");
    EXPECT_EQ(ioRig.mInstance->RunCycle(), kAAX_Success);
    look("00001");
    return seen +
           fmt::format("plug-in {} {}", ioRig.Effect().Parameters()[0], ioRig.Effect().Parameters()[1]);
}

std::string SeeValueTexts(SRig& ioRig)
{
    auto& texts = ioRig.Script().texts;
    ioRig.Script().parameters = {0.5F, 0.25F};
    texts[{effGetParamDisplay, 0}] = " 160";
    texts[{effGetParamLabel, 0}] = "ms";
    texts[{effGetParamDisplay, 1}] = "a\x01z\xFF" + std::string(10000, 'x');
    ioRig.Open();
    auto& parameters = ioRig.mInstance->Parameters();
    std::string seen;
    const auto look = [&](const char* id, double value, std::int32_t most = 31)
    {
        CHostString text;
        EXPECT_EQ(parameters.GetParameterStringFromValue(id, value, &text, most), kAAX_Success);
        seen += std::string(text.Get()) + "; ";
    };
    look("00000", 0.5);
    look("00000", 0.75);
    texts[{effGetParamDisplay, 0}] = "320";
    EXPECT_EQ(ioRig.mInstance->UpdateParameter("00000", 0.75), kAAX_Success);
    (void)ioRig.Script().TakeLog();
    look("00000", 0.75);
    look("00000", 0.75, 4);
    look("00000", 0.5);
    look("00001", 0.25, 12);
    for (const char* typed : {"160 ms", "320", "0.5", "0.3"})
    {
        double value = -1.0;
        (void)parameters.GetParameterValueFromString("00000", &value, CHostString(typed)); // or it stays
        seen += fmt::format("{:.3g}, ", value);
    }
    for (const std::string& line : ioRig.Script().TakeLog())
        EXPECT_TRUE(line.starts_with("effGetParam")) << line; // asking changes nothing
    return seen;
}

std::string SeeOutputNames(SRig& ioRig)
{
    ioRig.Script().shape.numOutputs = 9;
    ioRig.Script().outputPins = {{"Main", kVstPinIsStereo}, {}, {" Low\ttom ", kVstPinIsStereo}, {}, // stereo
                                 {"", kVstPinIsStereo},     {}, {"Ger\xE4t \xC3\xA4"},           {"\x01"},
                                 {std::string(64, 'x')}};
    ioRig.Open();
    std::string seen;
    for (const SAuxStem& stem : ioRig.mModule->Effect().mComponents.at(0).mAuxStems)
        seen += stem.mName + "; ";
    return seen;
}

struct SRow
{
    const char* mFeature;
    std::string (*mSee)(SRig&);
    const char* mWith;
    const char* mWithout;
};

// The first word of HOST_ANSWERS is from the description, whose plug-in belongs to no instance. Flags of the
// time record: 1 changed, 2 playing, 4 looping, 0x100 to 0x2000 what is valid.
const SRow kRows[] = {
    {"TIME", &SeeTime,
     "3f07 90.50000 90 90.5 3/4 4-8 0; 3f06 90.51508 90 90.5 3/4 4-8 10000000; "
     "3f06 90.54726 90 90.5 3/4 4-8 31333333; 3f05 90.56222 90 90.5 3/4 4-8 41250000; ",
     "2 2.50000 0 90.5 4/4 0-0 0; 2 2.51508 0 90.5 4/4 0-0 0; "
     "2 2.54726 0 90.5 4/4 0-0 0; 0 2.56222 0 90.5 4/4 0-0 0; "},
    {"LATENCY", &SeeLatency, "4096 4096 0 0 64 told 3 times, 96", "0 0 0 0 0 told 0 times, 0"},
    {"HOST_ANSWERS", &SeeAnswers,
     "gone; 48000 1024 2 1 1 1 -1 0 Resources; 48000 1024 1 1 1 1 -1 0 Resources; still there; "
     "effMainsChanged 0, effMainsChanged 1, effMainsChanged 1, effStartProcess, effStopProcess, "
     "effMainsChanged 0, ",
     "gone; 0 0 0 0 0 0 0 0 nowhere; 0 0 0 0 0 0 0 0 nowhere; gone; "
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
    {"PARAMETER_SYNC", &SeeParameterSync,
     "1 by 1; 1 by 2; 0.5 by 3; 0.75 by 5; 0.75 by 5; 0.25 by 6; plug-in 1 0.25",
     "0.25 by 0; 0 by 0; 1 by 0; 0.5 by 0; 0.5 by 0; 0.5 by 0; plug-in 1 0.25"},
    {"VALUE_TEXTS", &SeeValueTexts, "160 ms; 0.75; 320 ms; 320; 160 ms; a z?xxxxxxxx; 0.5, 0.75, 0.5, 0.3, ",
     "0.50; 0.75; 0.75; 0.75; 0.50; 0.25; -1, -1, 0.5, 0.3, "},
    {"OUTPUT_NAMES", &SeeOutputNames,
     "Low tom; Out 5-6; Ger?t \xC3\xA4; Out 8; "
     "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx; ",
     "; ; ; ; ; "},
};

TEST(Features, EachWorksAloneAndAmongAll)
{
    for (const SRow& row : kRows)
    {
        SCOPED_TRACE(row.mFeature);
        const auto see = [&](const fs::path& module)
        {
            SRig rig(module);
            return row.mSee(rig);
        };
        EXPECT_EQ(see(ModuleWith(row.mFeature)), row.mWith);
        EXPECT_EQ(see(ModuleWith("ALL")), row.mWith);
        EXPECT_EQ(see(kOptionsModule), row.mWithout);
    }
}

TEST(Features, SongsGoBetweenProductsWithAndWithoutThem)
{
    const auto open = [](SRig& rig)
    {
        rig.Script().parameters = {0.25F, 0.5F};
        rig.Open();
    };
    for (const auto& [from, to] :
         {std::pair(kOptionsModule, ModuleWith("ALL")), std::pair(ModuleWith("ALL"), kOptionsModule)})
    {
        SCOPED_TRACE(from);
        SRig saving(from);
        open(saving);
        EXPECT_EQ(saving.mInstance->SetParameter("00001", 0.75), kAAX_Success);
        saving.Effect().Parameters()[0] = 0.125F;
        const SInstanceState saved = Expect(TakeState(*saving.mModule, *saving.mInstance));
        SRig loading(to);
        open(loading);
        loading.Script().bankChunk = {9};
        for (const CStateChunk& chunk : saved.mChunks) // the tests' products do not have one identity
        {
            EXPECT_EQ(loading.mInstance->Parameters().SetChunk(chunk.Record().mChunkID, &chunk.Record()),
                      kAAX_Success);
            EXPECT_EQ(loading.mInstance->RunCycle(), kAAX_Success);
        }
        EXPECT_EQ(loading.Effect().Parameters(), saving.Effect().Parameters());
        EXPECT_EQ(StateOf(*loading.mModule, *loading.mInstance), StateOf(*saving.mModule, *saving.mInstance));
    }
}
} // namespace
