#include "Source/plugins/ProductFeatures.h"
#include "Tests/integration/FeatureRig.h"
#include "Tools/aaxhost/host/CHostString.h"
#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/aaxhost/player/InstanceState.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace
{
// ---- What is seen of each feature, in words. Each gets a rig that is not open yet.

std::string SeeParameterSync(SRig& ioRig)
{
    ioRig.Script().mParameters = {0.25F, 0.5F};
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
    auto& texts = ioRig.Script().mTexts;
    ioRig.Script().mParameters = {0.5F, 0.25F};
    texts[{effGetParamDisplay, 0}] = " 160";
    texts[{effGetParamLabel, 0}] = "ms";
    texts[{effGetParamDisplay, 1}] = "a\x01z\xFFxxxxxxx\xC3\xA4" + std::string(10000, 'x');
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

std::string SeeParameterProperties(SRig& ioRig)
{
    ioRig.Script().mParameters = {0.0F, 0.5F, 0.25F, 1.0F, 0.0F};
    const auto properties = [](std::int32_t flags, std::int32_t least, std::int32_t most, const char* name)
    {
        VstParameterProperties record{};
        record.flags = flags;
        record.minInteger = least;
        record.maxInteger = most;
        std::copy_n(name, std::min(std::strlen(name), sizeof(record.shortLabel)), record.shortLabel);
        return record;
    };
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    VstParameterProperties records[] = {properties(kVstParameterIsSwitch, 0, 0, " On\x01"),
                                        properties(kVstParameterUsesIntegerMinMax, -3, 4, "Semi\xE4neX"),
                                        properties(kVstParameterUsesIntegerMinMax, lowest, 0, ""),
                                        properties(kVstParameterUsesIntegerMinMax, 5, 5, "Fix"),
                                        properties(0, 1, 9, "Cut")};
    ioRig.Script().mHooks[effGetParameterProperties] = [&](ScriptedEffect&, const SDispatch& call)
    {
        if (call.mPointer != nullptr)
            std::memcpy(call.mPointer, &records[call.mIndex], sizeof(records[0]));
        ioRig.Script().mResults[effGetParameterProperties] = call.mIndex < 4 ? 1 : 0;
    };
    ioRig.Script().mHooks[effCanBeAutomated] = [&](ScriptedEffect&, const SDispatch& call)
    { ioRig.Script().mResults[effCanBeAutomated] = call.mIndex == 2 ? 0 : 1; };
    std::int32_t number = 0;
    for (const char* name : {"Switched on", "Transpose", "Everything", "Constant!", "Unanswered"})
        ioRig.Script().mTexts[{effGetParamName, number++}] = name;
    ioRig.Open();
    std::string seen;
    const auto look = [&](const SParameterInfo& info)
    {
        seen += fmt::format("{} '{}' {}{}{}; ", info.mName, info.mShortName, info.mSteps,
                            info.mDiscrete ? "" : "~", info.mAutomatable ? "" : " fixed");
    };
    for (const SParameterInfo& info : ioRig.mInstance->ListParameters())
        if (info.mID.starts_with('0'))
            look(info);
    ioRig.Script().mTexts[{effGetParamName, 1}] = "Octave shift";
    std::strcpy(records[1].shortLabel, "Oct");
    (void)ioRig.Effect().CallHost(audioMasterUpdateDisplay);
    EXPECT_EQ(ioRig.mInstance->UpdateParameter("00001", 0.75), kAAX_Success);
    ioRig.mLog.Clear();
    ioRig.Beat();
    look(ioRig.mInstance->ListParameters().at(1));
    ioRig.Beat();
    for (const std::string& call : ioRig.mLog.Calls())
        if (call.starts_with("PostCurrentValue"))
            seen += call;
    return seen;
}

/** Touches, releases and values as the host is asked for them. */
std::string SeeGestures(SRig& ioRig)
{
    ioRig.Script().mParameters = {0.25F, 0.5F};
    ioRig.Script().mShape.numPrograms = 1;
    ioRig.Open();
    ioRig.Effect().Effect().numPrograms = 2; // since when changes of all values are heard of
    std::string seen;
    const auto look = [&]
    {
        for (const auto& [call, sign] : {std::pair("PostTouchRequest", "t"),
                                         {"PostSetValueRequest", "v"},
                                         {"PostReleaseRequest", "r"},
                                         {"UnregisterParameter", "u"}})
            seen += fmt::format("{}{} ", ioRig.mLog.Count(call), sign);
        seen.back() = ';';
        seen += ' ';
        ioRig.mLog.Clear();
    };
    const auto call = [&](std::int32_t opcode, std::int32_t index)
    { (void)ioRig.Effect().CallHost(opcode, index); };
    const auto turn = [&](float value)
    {
        ioRig.Effect().Parameters()[0] = value;
        call(audioMasterAutomate, 0);
    };
    ioRig.mLog.Clear();
    call(audioMasterBeginEdit, 0);
    call(audioMasterBeginEdit, 0); // twice is once
    for (const float value : {0.25F, 0.375F, 0.5F})
        turn(value);
    look();
    call(audioMasterEndEdit, 0);
    call(audioMasterEndEdit, 0);
    look();
    turn(0.75F); // outside of a gesture
    look();
    for (const std::int32_t index : {-1, 2, 100'000})
        call(audioMasterBeginEdit, index);
    EXPECT_EQ(ioRig.mInstance->RunCycle(), kAAX_Success);
    look();
    ioRig.Effect().Parameters()[1] = 1.5F; // which is as good as 1
    for (int i = 0; i < 2; ++i)
        call(audioMasterUpdateDisplay, 0); // one value is another one
    look();
    Expect(ioRig.mInstance->OpenGUI());
    AAX_IACFEffectGUI& gui = *ioRig.mInstance->GUI();
    int view = 0;
    ioRig.mInstance->Host().ViewContainer().SetView(1, &view);
    (void)gui.SetViewContainer(&ioRig.mInstance->Host().ViewContainer()); // a plug-in without a window system
    call(audioMasterBeginEdit, 0);
    (void)gui.SetViewContainer(nullptr); // in the midst of a gesture
    look();
    ioRig.mInstance->CloseGUI();
    std::thread([&] { call(audioMasterBeginEdit, 1); }).join();
    ioRig.mLog.Clear();
    ioRig.mCall.reset();
    ioRig.mInstance.reset(); // here, too
    look();
    return seen;
}

/** The last sample of each output: the plug-in makes 0.25 or throws, the input is 0.5. */
std::string SeeBypass(SRig& ioRig)
{
    std::string seen;
    bool throws = false;
    ioRig.Script().mShape.numOutputs = 4;
    ioRig.Script().mShape.initialDelay = 100;
    ioRig.Script().mResults[effCanDo] = 0;
    ioRig.Script().mOnProcess = [&](ScriptedEffect&, float** inputs, float** outputs, std::int32_t frames)
    {
        for (int channel = 0; channel < 4; ++channel)
            std::fill_n(outputs[channel], frames, 0.25F);
        std::fill_n(inputs[0], frames, 0.125F);
        if (throws)
            throw 1;
    };
    ioRig.Open();
    const auto bypass = [&](double value)
    { EXPECT_EQ(ioRig.mInstance->UpdateParameter("MasterBypassID", value), kAAX_Success); };
    const auto play = [&](std::int32_t frames)
    {
        for (std::size_t channel = 0; channel < ioRig.mCall->mInputs.size(); ++channel)
            std::ranges::fill(ioRig.mCall->Input(channel), 0.5F);
        ioRig.Render(frames);
        for (std::size_t channel = 0; channel < ioRig.mCall->mOutputs.size(); ++channel)
            seen +=
                fmt::format("{:.3g} ", ioRig.mCall->Output(channel)[static_cast<std::size_t>(frames) - 1]);
        seen.back() = ';';
        seen += ' ';
    };
    bypass(1.0);
    play(64);   // the input is not late enough yet
    play(2048); // in parts
    throws = true;
    play(64);
    throws = false;
    bypass(0.0);
    play(240);
    play(240);
    // Another instance, of a plug-in that can.
    ioRig.Script().mResults[effCanDo] = 1;
    ioRig.Script().mHooks[effSetBypass] = [&](ScriptedEffect&, const SDispatch& call)
    { seen += fmt::format("told {}; ", call.mValue); };
    ioRig.mCall.reset();
    ioRig.mInstance = Expect(CInstance::Create(*ioRig.mModule, kHostedRate));
    bypass(1.0);
    bypass(0.0);
    return seen;
}

/** Each program has a value of its own for the one parameter. */
void GivePrograms(SPluginScript& ioScript)
{
    ioScript.mShape.flags = 0; // no chunk
    ioScript.mParameters = {0.0F};
    ioScript.mHooks[effSetProgram] = [](ScriptedEffect& effect, const SDispatch& call)
    { effect.Parameters()[0] = 0.25F * static_cast<float>(call.mValue); };
    std::int32_t number = 0;
    for (const char* name :
         {"Init", " Bass\x01", "", "Organ, which has a name of more than thirty characters"})
        ioScript.mTexts[{effGetProgramNameIndexed, number++}] = name;
}

/** As its editor does. */
void ChooseInPlugin(SRig& ioRig, VstIntPtr inProgram)
{
    AEffect& effect = ioRig.Effect().Effect();
    (void)effect.dispatcher(&effect, effSetProgram, 0, inProgram, nullptr, 0.0F);
    (void)ioRig.Script().TakeLog();
}

std::string SeePrograms(SRig& ioRig)
{
    GivePrograms(ioRig.Script());
    ioRig.Open();
    std::string seen;
    const auto look = [&]
    {
        EXPECT_EQ(ioRig.mInstance->RunCycle(), kAAX_Success);
        for (const std::string& line : ioRig.Script().TakeLog())
            if (line.find("SetProgram") != std::string::npos)
                seen += line + ", ";
        const SParameterInfo last = ioRig.mInstance->ListParameters().back();
        seen += fmt::format("{} of {}{}: {}, {} by {}; ", last.mID, last.mSteps,
                            last.mDiscrete ? "" : " or so", last.mValueText, ioRig.Effect().Parameters()[0],
                            ioRig.mLog.Count("PostSetValueRequest"));
        ioRig.mLog.Clear();
    };
    look();
    EXPECT_EQ(ioRig.mInstance->UpdateParameter("Program", 1.0 / 3.0), kAAX_Success);
    EXPECT_EQ(ioRig.mInstance->UpdateParameter("Program", 1.0 / 3.0), kAAX_Success);
    look();
    ChooseInPlugin(ioRig, 2);
    ioRig.Beat();
    look();
    for (const char* typed : {"Bass", "4", "5", "Drums"})
    {
        double value = -1.0;
        (void)ioRig.mInstance->Parameters().GetParameterValueFromString("Program", &value,
                                                                        CHostString(typed));
        seen += fmt::format("{:.3g}, ", value);
    }
    ioRig.Effect().Parameters()[0] = 0.875F; // an edit of the program
    const SInstanceState saved = Expect(TakeState(*ioRig.mModule, *ioRig.mInstance));
    EXPECT_EQ(ioRig.mInstance->UpdateParameter("Program", 1.0), kAAX_Success);
    look();
    const CStateChunk& controls = saved.mChunks.front();
    EXPECT_EQ(ioRig.mInstance->Parameters().SetChunk(controls.Record().mChunkID, &controls.Record()),
              kAAX_Success);
    look();
    return seen;
}

std::string SeeOutputNames(SRig& ioRig)
{
    ioRig.Script().mShape.numOutputs = 9;
    ioRig.Script().mOutputPins = {
        {"Main", kVstPinIsStereo}, {}, {" Low\ttom ", kVstPinIsStereo}, {}, // stereo
        {"", kVstPinIsStereo},     {}, {"Ger\xE4t \xC3\xA4"},           {"\x01"}, {std::string(64, 'x')}};
    ioRig.Open();
    std::string seen;
    for (const SAuxStem& stem : ioRig.mModule->Effect().mComponents.at(0).mAuxStems)
        seen += stem.mName + "; ";
    return seen;
}

const SFeatureRow kHostSideRows[] = {
    {"PARAMETER_SYNC", &SeeParameterSync,
     "1 by 1; 1 by 2; 0.5 by 3; 0.75 by 5; 0.75 by 5; 0.25 by 6; plug-in 1 0.25",
     "0.25 by 0; 0 by 0; 1 by 0; 0.5 by 0; 0.5 by 0; 0.5 by 0; plug-in 1 0.25"},
    {"VALUE_TEXTS", &SeeValueTexts, "160 ms; 0.75; 320 ms; 320; 160 ms; a z?xxxxxxx; 0.5, 0.75, 0.5, 0.3, ",
     "0.50; 0.75; 0.75; 0.75; 0.50; 0.25; -1, -1, 0.5, 0.3, "},
    {"PARAMETER_PROPERTIES", &SeeParameterProperties,
     "Switched on 'On' 2; Transpose 'Semi?neX' 8; Everything 'Everything' 128~ fixed; "
     "Constant! 'Fix' 128~; Unanswered 'Unanswered' 128~; Octave shift 'Oct' 8; PostCurrentValue(\"00001\", "
     "0.75)",
     "Switched on 'Switched on' 128~; Transpose 'Transpose' 128~; Everything 'Everything' 128~; "
     "Constant! 'Constant!' 128~; Unanswered 'Unanswered' 128~; Transpose 'Transpose' 128~; "},
    {"GESTURES", &SeeGestures,
     "1t 3v 0r 0u; 0t 0v 1r 0u; 1t 1v 1r 0u; 0t 0v 0r 0u; 1t 1v 1r 0u; 1t 0v 1r 0u; 0t 0v 1r 4u; ",
     "3t 3v 3r 0u; 0t 0v 0r 0u; 1t 1v 1r 0u; 0t 0v 0r 0u; 4t 4v 4r 0u; 0t 0v 0r 0u; 0t 0v 0r 4u; "},
    {"BYPASS", &SeeBypass,
     "0.25 0.25 0.25 0.25; 0.5 0.5 0 0; 0.5 0.5 0 0; 0.375 0.375 0.125 0.125; 0.25 0.25 0.25 0.25; told 1; "
     "told 0; ",
     "0.25 0.25 0.25 0.25; 0.25 0.25 0.25 0.25; 0 0 0 0; 0.25 0.25 0.25 0.25; 0.25 0.25 0.25 0.25; "},
    {"PROGRAMS", &SeePrograms,
     "Program of 4: Init, 0 by 0; "
     "effBeginSetProgram, effSetProgram 1, effEndSetProgram, Program of 4: Bass, 0.25 by 1; "
     "Program of 4: 3, 0.5 by 2; 0.333, 1, -1, -1, "
     "effBeginSetProgram, effSetProgram 3, effEndSetProgram, "
     "Program of 4: Organ, which has a name of more than thirty characters, 0.75 by 1; "
     "effBeginSetProgram, effSetProgram 2, effEndSetProgram, Program of 4: 3, 0.875 by 3; ",
     "Gain of 55 or so: 1.00, 0 by 0; Gain of 55 or so: 1.00, 0 by 0; Gain of 55 or so: 1.00, 0.5 by 0; "
     "-1, -1, -1, -1, Gain of 55 or so: 1.00, 0.875 by 0; Gain of 55 or so: 1.00, 0.875 by 2; "},
    {"OUTPUT_NAMES", &SeeOutputNames,
     "Low tom; Out 5-6; Ger?t \xC3\xA4; Out 8; "
     "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx; ",
     "; ; ; ; ; "},
};

TEST(Features, OfTheHostsSideWorkAloneAndAmongAll) { ExpectRows(kHostSideRows); }

TEST(Features, OfBothSidesAreAllThatThereAre)
{
    std::vector<std::string> tested;
    for (const auto rows : {PluginSideRows(), std::span<const SFeatureRow>(kHostSideRows)})
        for (const SFeatureRow& row : rows)
            tested.emplace_back(row.mFeature);
    EXPECT_EQ(tested,
              (std::vector<std::string>(std::begin(kProductFeatureNames), std::end(kProductFeatureNames))));
}

TEST(Features, APluginThatRoundsIsShownAsItIsByAnyKindOfHost)
{
    for (const EAnswers answers : kAllAnswers)
    {
        SCOPED_TRACE(NameOfAnswers(answers));
        SRig rig(ModuleWith("PARAMETER_SYNC"));
        rig.Script().mParameters = {0.0F};
        rig.Script().mSteps = 4;
        rig.Script().mReportsSets = true;
        rig.Open();
        rig.mInstance->Host().Automation().SetAnswers(answers);
        for (const auto& [set, value] : {std::pair(&CInstance::UpdateParameter, 0.3),
                                         {&CInstance::SetParameter, 0.3},
                                         {&CInstance::SetParameter, 0.8},
                                         {&CInstance::UpdateParameter, 0.95}})
        {
            EXPECT_EQ(std::invoke(set, *rig.mInstance, "00000", value), kAAX_Success);
            EXPECT_EQ(rig.mInstance->RunCycle(), kAAX_Success);
            EXPECT_EQ(rig.mInstance->RunCycle(), kAAX_Success); // for what was put off
            double told = -1.0;
            (void)rig.mInstance->Parameters().GetParameterNormalizedValue("00000", &told);
            EXPECT_EQ(told, static_cast<double>(rig.Effect().Parameters()[0]));
        }
        EXPECT_EQ(rig.Effect().Parameters()[0], 1.0F);
    }
}

TEST(Features, AProgramIsTheHostsAndThePluginsWithAnyKindOfHost)
{
    for (const EAnswers answers : kAllAnswers)
    {
        SCOPED_TRACE(NameOfAnswers(answers));
        SRig rig(ModuleWith("PROGRAMS"));
        GivePrograms(rig.Script());
        rig.Open();
        rig.mInstance->Host().Automation().SetAnswers(answers);
        const auto expect = [&](VstIntPtr program)
        {
            for (int i = 0; i < 2; ++i)
            {
                EXPECT_EQ(rig.mInstance->RunCycle(), kAAX_Success);
                rig.Beat();
            }
            AEffect& effect = rig.Effect().Effect();
            EXPECT_EQ(effect.dispatcher(&effect, effGetProgram, 0, 0, nullptr, 0.0F), program);
            double told = -1.0;
            (void)rig.mInstance->Parameters().GetParameterNormalizedValue("Program", &told);
            EXPECT_EQ(told, static_cast<double>(program) / 3.0);
        };
        for (const VstIntPtr program : {1, 2, 1, 3}) // ahead of any answer
        {
            ChooseInPlugin(rig, program);
            rig.Beat();
        }
        expect(3);
        EXPECT_EQ(std::ranges::count(rig.Script().TakeLog(), "effBeginSetProgram"),
                  0); // the host only answers
        ChooseInPlugin(rig, 2);
        rig.Beat();
        EXPECT_EQ(rig.mInstance->UpdateParameter("Program", 1.0 / 3.0), kAAX_Success); // the host is newer
        expect(answers == EAnswers::AtOnce ? 1 : 2);
    }
}

TEST(Features, APluginThatDeniesAutomationOfEverythingWasNotMadeToAnswer)
{
    SRig rig(ModuleWith("PARAMETER_PROPERTIES"));
    rig.Script().mParameters = {0.0F, 0.5F};
    rig.Script().mResults[effCanBeAutomated] = 0;
    rig.Open();
    for (const SParameterInfo& info : rig.mInstance->ListParameters())
        EXPECT_EQ(info.mAutomatable, info.mID != "Gain") << info.mID;
}

TEST(Features, SongsGoBetweenProductsWithAndWithoutThem)
{
    std::int32_t flags = 0;
    const auto open = [&](SRig& rig)
    {
        rig.Script().mParameters = {0.25F, 0.5F};
        rig.Script().mShape.flags = flags;
        rig.Open();
    };
    for (const auto& [from, to, kind] : {std::tuple(kOptionsModule, ModuleWith("ALL"), 0),
                                         {ModuleWith("ALL"), kOptionsModule, 0},
                                         {kOptionsModule, ModuleWith("ALL"), effFlagsProgramChunks},
                                         {ModuleWith("ALL"), kOptionsModule, effFlagsProgramChunks}})
    {
        SCOPED_TRACE(fmt::format("{} to {}, {}", from.string(), to.string(), kind));
        flags = kind;
        SRig saving(from);
        open(saving);
        EXPECT_EQ(saving.mInstance->SetParameter("00001", 0.75), kAAX_Success);
        saving.Effect().Parameters()[0] = 0.125F;
        const SInstanceState saved = Expect(TakeState(*saving.mModule, *saving.mInstance));
        SRig loading(to);
        open(loading);
        loading.Script().mBankChunk = {9};
        for (const CStateChunk& chunk : saved.mChunks) // the tests' products do not have one identity
        {
            EXPECT_EQ(loading.mInstance->Parameters().SetChunk(chunk.Record().mChunkID, &chunk.Record()),
                      kAAX_Success);
            EXPECT_EQ(loading.mInstance->RunCycle(), kAAX_Success);
            AAX_CBoolean isEqual = 0; // what the compare light shows
            EXPECT_EQ(loading.mInstance->Parameters().CompareActiveChunk(&chunk.Record(), &isEqual),
                      kAAX_Success);
            EXPECT_NE(isEqual, 0);
        }
        EXPECT_EQ(loading.Effect().Parameters(), saving.Effect().Parameters());
        if (kind == 0)
            continue; // the controls have the program as well, where the product knows it
        EXPECT_EQ(StateOf(*loading.mModule, *loading.mInstance), StateOf(*saving.mModule, *saving.mInstance));
    }
}
} // namespace
