#include "Platform/PluginImage.h"
#include "Source/plugins/CVst2Host.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/EffectRegistry.h"
#include "Source/plugins/PortList.h"
#include "Tests/doubles/ScriptedModule.h"
#include "Tests/support/CTestFolder.h"
#include "Tests/support/FileContents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <elf.h>

namespace
{
namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

TEST(PluginLoad, OpcodesComeInTheRequiredOrderAndOpeningIsLeftToInitialize)
{
    ScriptedModule module;
    module.Script().mShape.numInputs = 1;
    module.Script().mShape.numOutputs = 2;
    module.Script().mInputPins = {{"In", 0}};
    module.Script().mOutputPins = {{"Out", kVstPinIsStereo}};
    CVst2Host host;
    CVst2Plugin* const plugin = host.LoadPlugin(module.Path());
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(module.Script().TakeLog(),
              (Lines{"effGetEffectName", "effGetVendorString", "effGetProductString", "effGetVstVersion",
                     "effCanDo receiveVstMidiEvent", "effGetInputProperties 0", "effGetOutputProperties 0"}));
    EXPECT_EQ(plugin->GetState(), 1);

    const Lines initialized{"effSetSampleRate 48000", "effSetBlockSize 512", "effOpen", "effMainsChanged 1"};
    EXPECT_TRUE(plugin->Initialize(512, 48000.0F));
    EXPECT_EQ(module.Script().TakeLog(), initialized);
    EXPECT_EQ(plugin->GetState(), 2);
    EXPECT_TRUE(plugin->Initialize(512, 48000.0F)); // no shortcut the second time
    EXPECT_EQ(module.Script().TakeLog(), initialized);

    EXPECT_TRUE(host.ClosePlugin(plugin));
    EXPECT_EQ(module.Script().TakeLog(), (Lines{"effMainsChanged 0", "effClose"}));
    EXPECT_TRUE(ScriptedModule::IsLoaded(module.Path()));
}

TEST(PluginLoad, IdentityIsReadWithItsDefaultsAndSigns)
{
    ScriptedModule module;
    module.Script().mTexts = {{{effGetVendorString, 0}, "Maker"}};
    module.Script().mShape.flags = effFlagsIsSynth;
    module.Script().mShape.uniqueID = -2;
    module.Script().mShape.numInputs = -5;
    module.Script().mShape.numOutputs = 2000000000;
    CVst2Host host;
    CVst2Plugin* const plugin = host.LoadPlugin(module.Path());
    ASSERT_NE(plugin, nullptr);
    EXPECT_STREQ(plugin->GetName(), "scroob_the_doob");
    EXPECT_STREQ(plugin->GetVendor(), "Maker");
    EXPECT_STREQ(plugin->GetProduct(), "");
    EXPECT_TRUE(plugin->IsInstrument());
    EXPECT_EQ(plugin->GetUniqueId(), -2);
    long inputs = -1;
    long outputs = -1;
    EXPECT_TRUE(plugin->GetChannels(inputs, outputs));
    EXPECT_EQ(inputs, 0);
    EXPECT_EQ(outputs, 65536);
}

TEST(PluginLoad, TextsLongerThanTheirBufferEndInsideItAndHarmNothing)
{
    ScriptedModule module;
    module.Script().mTexts[{effGetEffectName, 0}] = std::string(600, 'n');
    module.Script().mTexts[{effGetProductString, 0}] = std::string(600, 'r');
    module.Script().mShape.numInputs = 1;
    module.Script().mInputPins = {{"Main", 0}};
    module.Script().mHooks[effGetParamName] = [](ScriptedEffect&, const SDispatch& inCall)
    { std::fill_n(static_cast<char*>(inCall.mPointer), 1000, 'p'); };
    CVst2Host host;
    CVst2Plugin* const plugin = host.LoadPlugin(module.Path());
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(std::string(plugin->GetName()), std::string(255, 'n'));
    EXPECT_EQ(std::string(plugin->GetProduct()), std::string(255, 'r'));
    EXPECT_STREQ(plugin->GetVendor(), "");
    EXPECT_EQ(plugin->InputPorts().size(), 1U);
    EXPECT_EQ(std::string(plugin->GetParameterName(0)), std::string(255, 'p'));
    EXPECT_STREQ(plugin->GetParameterLabel(0), ""); // unanswered: nothing of the text before
}

TEST(PluginLoad, MidiIsTakenOnAnAnswerOfExactlyOneOrOnRequest)
{
    struct SRow
    {
        int mAnswer;
        bool mAsks;
        bool mAccepts;
    };
    for (const SRow& row :
         {SRow{1, false, true}, SRow{2, false, false}, SRow{-1, false, false}, SRow{-1, true, true}})
    {
        SCOPED_TRACE(row.mAnswer * 10 + (row.mAsks ? 1 : 0));
        ScriptedModule module;
        module.Script().mResults[effCanDo] = row.mAnswer;
        if (row.mAsks)
        {
            // Ahead of the question, so the flag must outlive the answer.
            module.Script().mHooks[effGetVstVersion] = [](ScriptedEffect& inEffect, const SDispatch&)
            { EXPECT_EQ(inEffect.CallHost(audioMasterWantMidi), 0); };
        }
        CVst2Host host;
        CVst2Plugin* const plugin = host.LoadPlugin(module.Path());
        ASSERT_NE(plugin, nullptr);
        EXPECT_EQ(plugin->AcceptsMidi(), row.mAccepts);
        EXPECT_EQ(plugin->AcceptedMidiAtLoad(), row.mAccepts);
    }
}

TEST(PluginLoad, MidiAskedForWhileOpeningDoesNotChangeWhatLoadSaw)
{
    ScriptedModule module;
    module.Script().mHooks[effOpen] = [](ScriptedEffect& inEffect, const SDispatch&)
    { EXPECT_EQ(inEffect.CallHost(audioMasterWantMidi), 0); };
    CVst2Host host;
    CVst2Plugin* const plugin = host.LoadPlugin(module.Path());
    ASSERT_NE(plugin, nullptr);
    ASSERT_TRUE(plugin->Initialize(64, 44100.0F));
    EXPECT_TRUE(plugin->AcceptsMidi());
    EXPECT_FALSE(plugin->AcceptedMidiAtLoad());
}

TEST(PluginLoad, EachEntryNameLoadsAndAFileWithoutOneIsUnloaded)
{
    struct SRow
    {
        const char* mFile;
        bool mLoads;
    };
    for (const SRow& row :
         {SRow{"scripted_plugin.so", true}, SRow{"scripted_plugin_main_macho.so", true},
          SRow{"scripted_plugin_main_only.so", PlatformEntrySymbol() != nullptr},
          SRow{"scripted_plugin_no_entry.so", false}, SRow{"scripted_plugin_throwing.so", false}})
    {
        SCOPED_TRACE(row.mFile);
        const std::string path = ScriptedModule::FileOf(row.mFile);
        CVst2Host host;
        CVst2Plugin* const plugin = host.LoadPlugin(path.c_str());
        EXPECT_EQ(plugin != nullptr, row.mLoads);
        EXPECT_EQ(ScriptedModule::IsLoaded(path), row.mLoads);
        EXPECT_EQ(host.Plugins().size(), row.mLoads ? 1U : 0U);
        if (plugin != nullptr)
        {
            plugin->FreeLib();
            EXPECT_FALSE(ScriptedModule::IsLoaded(path));
            EXPECT_EQ(plugin->GetNumParameters(), -1); // the effect went with its code
        }
    }
}

TEST(PluginLoad, EveryFailureUnloadsUnregistersAndUnlists)
{
    struct SRow
    {
        const char* mWhat;
        bool mCloses; // what it has as an effect
        void (*mPrepare)(SPluginScript&);
    };
    const SRow rows[] = {
        {"null effect", false, [](SPluginScript& s) { s.mEntryReturnsNull = true; }},
        {"wrong magic", false, [](SPluginScript& s) { s.mShape.magic = 0x56737451; }},
        {"no dispatcher", false,
         [](SPluginScript& s) { s.mOnCreate = [](AEffect& e) { e.dispatcher = nullptr; }; }},
        {"entry throws", false,
         [](SPluginScript& s) { s.mOnEntry = [](auto) { throw std::runtime_error("entry"); }; }},
        {"name throws", true, [](SPluginScript& s) { s.mFaults = {effGetEffectName}; }},
        {"can-do and closing throw", true,
         [](SPluginScript& s) {
             s.mFaults = {effCanDo, effClose};
         }},
        {"pin throws", true,
         [](SPluginScript& s) { s.mShape.numOutputs = 1, s.mFaults = {effGetOutputProperties}; }},
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.mWhat);
        ScriptedModule module;
        std::vector<AEffect*> seen;
        row.mPrepare(module.Script());
        const auto prepared = module.Script().mOnCreate;
        module.Script().mOnCreate = [&](AEffect& inEffect)
        {
            seen.push_back(&inEffect);
            prepared ? prepared(inEffect) : void();
        };
        CVst2Host host;
        EXPECT_EQ(host.LoadPlugin(module.Path()), nullptr);
        EXPECT_TRUE(host.Plugins().empty());
        const Lines calls = module.Script().TakeLog();
        EXPECT_EQ(!calls.empty() && calls.back() == "effClose", row.mCloses);
        for (AEffect* const effect : seen)
            EXPECT_EQ(gEffectRegistry.Find(effect).mPlugin, nullptr);
        module.Release();
        EXPECT_FALSE(ScriptedModule::IsLoaded(module.Path()));
    }
}

/** @return how many bytes of a file its loaded image comes from. */
std::uintmax_t LoadedSize(const fs::path& inFile)
{
    const std::string bytes = Contents(inFile);
    Elf64_Ehdr header{};
    std::memcpy(&header, bytes.data(), sizeof(header));
    std::uintmax_t size = 0;
    for (std::size_t i = 0; i < header.e_phnum; ++i)
    {
        Elf64_Phdr segment{};
        std::memcpy(&segment, bytes.data() + header.e_phoff + i * sizeof(segment), sizeof(segment));
        if (segment.p_type == PT_LOAD)
            size = std::max(size, segment.p_offset + segment.p_filesz);
    }
    return size;
}

TEST(PluginLoad, OnlyARealPluginFileOrBundleLoads)
{
    const CTestFolder files;
    const fs::path& folder = files.Path();
    const auto bundle = [&](const char* inName, const char* inInside)
    {
        fs::create_directories(folder / inName / inInside);
        return folder / inName / inInside;
    };
    const fs::path good = ScriptedModule::FileOf("scripted_plugin.so");
    const fs::path entryless = ScriptedModule::FileOf("scripted_plugin_no_entry.so");
    fs::copy_file(good, bundle("deep.vst", "Contents/" AAXADAPTER_EXECUTABLE_FOLDER) / "b.so");
    fs::copy_file(entryless, folder / "deep.vst/a.so"); // the deeper folder goes first
    fs::copy_file(good, bundle("flat.vst", "Contents/Resources").parent_path().parent_path() / "a.so");
    fs::copy_file(entryless, folder / "flat.vst/b.so"); // the first in the alphabet is taken
    bundle("empty.vst", "Contents/" AAXADAPTER_EXECUTABLE_FOLDER);
    fs::copy_file(good, folder / "source.vst"); // a plain file may have any name
    fs::copy_file(good, folder / "cut.vst");
    fs::resize_file(folder / "cut.vst", 5000);
    for (const auto& [name, missing] : {std::pair{"bare.vst", 0U}, {"segment.vst", 1U}})
    {
        fs::copy_file(good, folder / name);
        fs::resize_file(folder / name, LoadedSize(good) - missing);
    }
    std::ofstream(folder / "text.vst") << "not a plug-in\n";

    struct SRow
    {
        const char* mName;
        bool mLoads;
    };
    for (const SRow& row : {SRow{"deep.vst", true}, SRow{"flat.vst", true}, SRow{"empty.vst", false},
                            SRow{"source.vst", true}, SRow{"cut.vst", false}, SRow{"bare.vst", true},
                            SRow{"segment.vst", false}, SRow{"text.vst", false}, SRow{"missing.vst", false}})
    {
        SCOPED_TRACE(row.mName);
        CVst2Host host;
        EXPECT_EQ(host.LoadPlugin((folder / row.mName).c_str()) != nullptr, row.mLoads);
    }
    CVst2Host host;
    EXPECT_EQ(host.LoadPlugin(""), nullptr);
    EXPECT_EQ(host.LoadPlugin(nullptr), nullptr);
    EXPECT_EQ(host.LoadPlugin(fs::relative(good).c_str()), nullptr);
    CVst2Plugin orphan;
    EXPECT_FALSE(orphan.Load(good.c_str(), nullptr));
}

struct SPortRow
{
    const char* mWhat;
    std::vector<SScriptedPin> mInputs;
    std::vector<SScriptedPin> mOutputs;
    Lines mAsked;
    std::vector<long> mInputPorts;
    std::vector<long> mOutputPorts;
};

std::vector<long> ChannelsOf(std::span<const SIOPortDef> inPorts)
{
    std::vector<long> counts;
    for (const SIOPortDef& port : inPorts)
        counts.push_back(port.channelCount);
    return counts;
}

TEST(PluginPorts, PinsBecomePortsUntilOneIsNotAnsweredOrNamesASpeaker)
{
    const SScriptedPin mono{"", 0};
    const SScriptedPin stereo{"", kVstPinIsStereo};
    const SScriptedPin speaker{"", kVstPinUseSpeaker};
    const SScriptedPin both{"", kVstPinIsStereo | kVstPinUseSpeaker};
    const std::string in = "effGetInputProperties ";
    const std::string out = "effGetOutputProperties ";
    const SPortRow rows[] = {
        {"stereo skips a pin", {stereo, mono, both, mono}, {}, {in + "0", in + "2", out + "0"}, {2, 2}, {}},
        {"stereo at the odd end",
         {mono, mono, mono, stereo},
         {},
         {in + "0", in + "1", in + "2", in + "3", out + "0"},
         {1, 1, 1, 2},
         {}},
        {"unanswered ends one direction",
         {mono},
         {mono, mono, stereo},
         {in + "0", in + "1", out + "0", out + "1", out + "2"},
         {1},
         {1, 1, 2}},
        {"speaker ends all", {mono, speaker, mono}, {mono}, {in + "0", in + "1"}, {1}, {}},
        {"speaker among outputs", {}, {stereo, mono, speaker}, {in + "0", out + "0", out + "2"}, {}, {2}},
    };
    for (const SPortRow& row : rows)
    {
        SCOPED_TRACE(row.mWhat);
        ScriptedModule module;
        module.Script().mShape.numInputs = 4;
        module.Script().mShape.numOutputs = 4;
        module.Script().mInputPins = row.mInputs;
        module.Script().mOutputPins = row.mOutputs;
        CVst2Host host;
        CVst2Plugin* const plugin = host.LoadPlugin(module.Path());
        ASSERT_NE(plugin, nullptr);
        (void)module.Script().TakeLog(); // what Load itself sent
        plugin->GetPortList();
        // An unanswered first pin of the other direction is asked once; after four output pins nothing is
        // left to ask.
        EXPECT_EQ(module.Script().TakeLog(), row.mAsked);
        EXPECT_EQ(ChannelsOf(plugin->InputPorts()), row.mInputPorts);
        EXPECT_EQ(ChannelsOf(plugin->OutputPorts()), row.mOutputPorts);
    }
}

TEST(PluginPorts, InputsAreNamedWithinTheLabelAndOutputsNever)
{
    ScriptedModule module;
    module.Script().mShape.numInputs = 1;
    module.Script().mShape.numOutputs = 1;
    module.Script().mInputPins = {{std::string(64, 'L'), 0}}; // no terminator fits
    module.Script().mHooks[effGetInputProperties] = [](ScriptedEffect&, const SDispatch& inCall)
    { std::fill_n(static_cast<char*>(inCall.mPointer), 256, 'x'); }; // more than the record, as some do
    module.Script().mOutputPins = {{"Out", 0}};
    CVst2Host host;
    CVst2Plugin* const plugin = host.LoadPlugin(module.Path());
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(std::string(plugin->InputPorts()[0].name.data()), std::string(63, 'L'));
    EXPECT_STREQ(plugin->OutputPorts()[0].name.data(), "");
}

TEST(PluginPorts, PortsFromCountsReplaceOnlyAnUnansweredFirstPin)
{
    ScriptedModule module;
    module.Script().mInputPins = {{"", 0}};
    CVst2Host host;
    CVst2Plugin* const plugin = host.LoadPlugin(module.Path());
    ASSERT_NE(plugin, nullptr);
    AEffect& effect = *plugin->GetEffect();
    std::vector<SIOPortDef> ports;
    EXPECT_TRUE(ListPorts(effect, EPortDirection::kOutput, 5, true, ports));
    EXPECT_EQ(ChannelsOf(ports), (std::vector<long>{2, 2, 1}));
    EXPECT_TRUE(ListPorts(effect, EPortDirection::kOutput, 5, false, ports));
    EXPECT_TRUE(ports.empty());
    EXPECT_TRUE(
        ListPorts(effect, EPortDirection::kInput, 5, true, ports)); // the first is answered, the second not
    EXPECT_EQ(ChannelsOf(ports), (std::vector<long>{1}));
    EXPECT_TRUE(PortsFromChannelCount(-3).empty());
    EXPECT_EQ(ChannelsOf(PortsFromChannelCount(2)), (std::vector<long>{2}));
}

TEST(PluginPorts, PinThatEndsTheListLeavesADirectionWithoutPortsToItsCount)
{
    const SScriptedPin mono{"", 0};
    const SScriptedPin speaker{"", kVstPinUseSpeaker};
    struct SRow
    {
        const char* mWhat;
        std::vector<SScriptedPin> mInputs;
        std::vector<SScriptedPin> mOutputs;
        std::vector<long> mInputPorts;
        std::vector<long> mOutputPorts;
        std::vector<long> mOutputPortsWithout; // the option
    };
    for (const SRow& row : {SRow{"first input names a speaker", {speaker}, {mono}, {2, 2, 1}, {2, 2}, {}},
                            SRow{"later input names one", {mono, speaker}, {mono}, {1}, {2, 2}, {}},
                            SRow{"first output names one", {mono}, {speaker}, {1}, {2, 2}, {}},
                            SRow{"later output names one", {mono}, {mono, speaker}, {1}, {1}, {1}}})
    {
        SCOPED_TRACE(row.mWhat);
        ScriptedModule module;
        module.Script().mInputPins = row.mInputs;
        module.Script().mOutputPins = row.mOutputs;
        CVst2Host host;
        CVst2Plugin* const plugin = host.LoadPlugin(module.Path());
        ASSERT_NE(plugin, nullptr);
        std::vector<SIOPortDef> inputs;
        std::vector<SIOPortDef> outputs;
        ListPorts(*plugin->GetEffect(), 5, 4, true, inputs, outputs);
        EXPECT_EQ(ChannelsOf(inputs), row.mInputPorts);
        EXPECT_EQ(ChannelsOf(outputs), row.mOutputPorts);
        ListPorts(*plugin->GetEffect(), 5, 4, false, inputs, outputs);
        EXPECT_EQ(ChannelsOf(outputs), row.mOutputPortsWithout);
    }
}
} // namespace
