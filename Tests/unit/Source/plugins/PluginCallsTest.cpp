#include "Tests/unit/Source/plugins/LoadedPlugin.h"

#include <limits>

namespace
{
using PluginCalls = LoadedPlugin;

TEST_F(PluginCalls, ParameterIsSentOnlyWhenItDiffers)
{
    Script().mParameters = {0.25F, std::numeric_limits<float>::quiet_NaN()};
    CVst2Plugin& plugin = Load();
    plugin.SetParameter(0, 0.25F);
    plugin.SetParameter(0, std::numeric_limits<float>::quiet_NaN());
    plugin.SetParameter(1, 0.5F); // unordered counts as equal, either way round
    plugin.SetParameter(0, 0.75F);
    plugin.SetParameter(0, 0.5F);
    EXPECT_EQ(Script().TakeLog(), (Lines{"setParameter 0 0.75", "setParameter 0 0.5"}));
}

TEST_F(PluginCalls, TextsComeFromTheirOwnOpcodesAndIndexes)
{
    Script().mTexts[{effGetParamName, 3}] = "Cutoff";
    Script().mTexts[{effGetParamDisplay, 3}] = "1.0";
    Script().mTexts[{effGetParamLabel, 3}] = "kHz";
    Script().mTexts[{effGetProgramNameIndexed, 2}] = "Lead";
    CVst2Plugin& plugin = Load();
    EXPECT_STREQ(plugin.GetParameterName(3), "Cutoff");
    EXPECT_STREQ(plugin.GetParameterDisplay(3), "1.0");
    EXPECT_STREQ(plugin.GetParameterLabel(3), "kHz");
    EXPECT_STREQ(plugin.GetProgramNameByIndex(2), "Lead");
    EXPECT_STREQ(plugin.GetParameterName(4), "");
    plugin.SetProgram(2);
    EXPECT_EQ(plugin.GetProgram(), 2);
}

TEST_F(PluginCalls, MidiProgramTextShowsTheCategoryOnlyWhenItExists)
{
    struct SRow
    {
        std::int32_t mParent;
        const char* mText;
    };
    Script().mMidiPrograms = {"Piano", "Organ"};
    Script().mMidiCategories = {"Keys", "Pads"};
    CVst2Plugin& plugin = Load();
    for (const SRow& row : {SRow{-1, " - ; ? ; -3 ; 5 ; Organ"}, SRow{0, " Keys ; ? ; -3 ; 5 ; Organ"},
                            SRow{1, " Pads ; ? ; -3 ; 5 ; Organ"}, SRow{2, " - ; ? ; -3 ; 5 ; Organ"}})
    {
        SCOPED_TRACE(row.mParent);
        Script().mMidiParent = row.mParent;
        EXPECT_STREQ(plugin.GetMidiProgram(1), row.mText);
    }
    EXPECT_EQ(plugin.GetNumMidiPrograms(), 2);
    EXPECT_STREQ(plugin.GetMidiCategory(1), "Pads");
    EXPECT_STREQ(plugin.GetMidiCategory(2), "");
    Script().mMidiCategories.clear();
    Script().mMidiParent = 0;
    EXPECT_STREQ(plugin.GetMidiProgram(0), " - ; ? ; -3 ; 5 ; Piano");
    EXPECT_EQ(plugin.GetNumMidiCategories(), 0);
    const std::string name(64, 'x'); // fills its field, so that it has no terminator
    Script().mMidiPrograms = Script().mMidiCategories = {name};
    EXPECT_EQ(plugin.GetMidiProgram(0), " " + name.substr(1) + " ; ? ; -3 ; 5 ; " + name.substr(1));
}

TEST_F(PluginCalls, MidiProgramRecordAsksForProgramZeroInOmniMode)
{
    Script().mHooks[effGetMidiProgramName] = [](ScriptedEffect&, const SDispatch& inCall)
    {
        const auto& program = *static_cast<const MidiProgramName*>(inCall.mPointer);
        EXPECT_EQ(inCall.mIndex, 5);
        EXPECT_EQ(program.thisProgramIndex, 0);
        EXPECT_EQ(program.flags, 1);
        EXPECT_STREQ(program.name, "");
    };
    CVst2Plugin& plugin = Load();
    (void)plugin.GetMidiProgram(5); // the hook looks at it
    EXPECT_EQ(Script().TakeLog().front(), "effGetMidiProgramName 5");
}

TEST_F(PluginCalls, OnlyTheDirectProcessRunsBeforeInitialization)
{
    Script().mShape.numInputs = 2;
    Script().mShape.numOutputs = 1;
    CVst2Plugin& plugin = Load();
    std::vector<float> a(16, 0.1F);
    std::vector<float> b(16, 0.2F);
    std::vector<float> c(16, 0.3F);
    float* buffers[] = {a.data(), b.data(), c.data()};
    long inputMap[] = {2, 0};
    long outputMap[] = {1};
    long outputs = 0;
    plugin.Process(buffers, 16, 2, inputMap, 1, outputMap);
    (void)plugin.Process(16, outputs); // without buffers nothing runs either
    EXPECT_EQ(outputs, 1);
    EXPECT_TRUE(Script().TakeLog().empty());
    plugin.Process(buffers, buffers + 2, 16);
    EXPECT_EQ(Script().TakeLog(), (Lines{"processReplacing 16"}));

    ASSERT_TRUE(plugin.Initialize(32, 44100.0F));
    std::vector<float*> seen;
    Script().mOnProcess = [&seen](ScriptedEffect&, float** in, float** out, std::int32_t) {
        seen = {in[0], in[1], out[0]};
    };
    plugin.Process(buffers, 16, 2, inputMap, 1, outputMap);
    EXPECT_EQ(seen, (std::vector<float*>{c.data(), a.data(), b.data()}));
    long otherInputs[] = {1, 1};
    plugin.Process(buffers, 16, 1, otherInputs, 1, outputMap); // too few input buffers: the old ones stay
    EXPECT_EQ(seen, (std::vector<float*>{c.data(), a.data(), b.data()}));
}

TEST_F(PluginCalls, ProcessInPlaceOffersRoomForEveryChannelOfThePlugin)
{
    Script().mShape.numInputs = 3;
    Script().mShape.numOutputs = 2;
    CVst2Plugin& plugin = Load();
    ASSERT_TRUE(plugin.Initialize(32, 44100.0F));
    float** usedInputs = nullptr;
    Script().mOnProcess = [&usedInputs](ScriptedEffect&, float** in, float** out, std::int32_t frames)
    {
        EXPECT_EQ(in, out);
        EXPECT_EQ(frames, 32);
        usedInputs = in;
        for (int channel = 0; channel < 3; ++channel)
            std::fill_n(in[channel], frames, 1.0F);
    };
    EXPECT_EQ(plugin.Process(), usedInputs);
    EXPECT_NE(usedInputs, nullptr);
}

TEST_F(PluginCalls, EditorSizeSurvivesAMissingRectangle)
{
    CVst2Plugin& plugin = Load();
    Script().mEditorSize = {-10, 20, 290, 420};
    Script().mResults[effEditGetRect] = 0; // the rectangle counts, whatever comes back
    long x = 1;
    long y = 1;
    long width = 1;
    long height = 1;
    plugin.GetEditorSize(x, y, width, height);
    EXPECT_EQ((std::vector<long>{x, y, width, height}), (std::vector<long>{20, -10, 400, 300}));
    Script().mGivesEditorSize = false;
    plugin.GetEditorSize(x, y, width, height);
    EXPECT_EQ((std::vector<long>{x, y, width, height}), (std::vector<long>{0, 0, 0, 0}));
    Script().mResults[effEditOpen] = 0;
    EXPECT_FALSE(plugin.OpenEditor(&x));
}

TEST_F(PluginCalls, VendorSpecificPassesItsArgumentsThrough)
{
    CVst2Plugin& plugin = Load();
    char data[] = "data";
    Script().mResults[effVendorSpecific] = 77;
    Script().mHooks[effVendorSpecific] = [&data](ScriptedEffect&, const SDispatch& inCall)
    {
        EXPECT_EQ(inCall.mIndex, -1);
        EXPECT_EQ(inCall.mValue, 1L << 40);
        EXPECT_EQ(inCall.mPointer, data);
        EXPECT_EQ(inCall.mOpt, 0.5F);
    };
    long handled = 0;
    EXPECT_EQ(plugin.VendorSpecific(handled, -1, 1L << 40, data, 0.5F), 77);
    EXPECT_EQ(handled, 1);
}

TEST(PluginWithoutEffect, EveryCallGivesItsSafeAnswer)
{
    CVst2Plugin plugin;
    unsigned long message = 0x90;
    float* none = nullptr;
    long value = 9;
    bool flag = false;
    plugin.ForceMidi();
    plugin.RequestIdle();
    plugin.ProcessEvents(1, &message, nullptr);
    plugin.Process(&none, &none, 16);
    plugin.SetParameter(0, 1.0F);
    plugin.SetProgram(1);
    plugin.SetChunk(&value, 8);
    plugin.SetState(&value, 8);
    plugin.EffectIdle();
    plugin.Idle();
    plugin.CloseEditor();
    plugin.GetPortList();
    plugin.FreeLib();
    for (const long number : {plugin.GetNumParameters(), plugin.GetNumPrograms(), plugin.GetProgram(),
                              plugin.GetNumMidiPrograms(), plugin.GetNumMidiCategories()})
        EXPECT_EQ(number, -1);
    for (const char* const text :
         {plugin.GetParameterName(0), plugin.GetParameterDisplay(0), plugin.GetMidiCategory(0),
          plugin.GetMidiProgram(0), plugin.GetProgramNameByIndex(0)})
        EXPECT_STREQ(text, "");
    EXPECT_EQ(plugin.GetParameter(0), 0.0F);
    EXPECT_FALSE(plugin.Initialize(64, 44100.0F));
    EXPECT_EQ(plugin.Process(), nullptr);
    EXPECT_FALSE(plugin.HasEditor());
    EXPECT_FALSE(plugin.OpenEditor(&value));
    EXPECT_FALSE(plugin.OpenEditor(nullptr, flag, value, value, value, value, value));
    EXPECT_EQ(value, 40);
    EXPECT_FALSE(plugin.GotChunk());
    EXPECT_EQ(plugin.GetChunk(), nullptr);
    EXPECT_EQ(plugin.GetState(value), nullptr);
    EXPECT_EQ(plugin.VendorSpecific(value, 0, 0, nullptr, 0.0F), 0);
    EXPECT_EQ(value, 0);
}

TEST_F(PluginCalls, ExceptionOfTheRunningPluginPassesToTheCaller)
{
    CVst2Plugin& plugin = Load();
    Script().mOnProcess = [](ScriptedEffect&, float**, float**, std::int32_t)
    { throw std::runtime_error("process"); };
    EXPECT_THROW(plugin.Process(nullptr, nullptr, 1), std::runtime_error);
}

TEST_F(PluginCalls, MidiMatrixRefusesWhatIsOutsideIt)
{
    CVst2Plugin& plugin = Load();
    EXPECT_TRUE(plugin.RouteMidiToPlugin(15, 0, true));
    for (const auto& [row, column] : {std::pair{16L, 0L}, {0L, 16L}, {-1L, 0L}, {0L, -1L}})
        EXPECT_FALSE(plugin.RouteMidiToPlugin(row, column, true));
    EXPECT_TRUE(plugin.IsMidiRouted(15, 0));
    EXPECT_FALSE(plugin.IsMidiRouted(0, 15));
    EXPECT_FALSE(plugin.IsMidiRouted(0, 0));
}
} // namespace
