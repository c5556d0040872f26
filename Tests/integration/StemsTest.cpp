#include "Tests/integration/FeatureRig.h"
#include "Tools/aaxhost/host/HostNames.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace
{
const std::filesystem::path kStemsModule = STEMS_MODULE;

/** Each output is 1, 2 and so on; what is heard of the inputs is in words. */
void Sound(SPluginScript& ioScript, std::string& outInputs)
{
    ioScript.mOnProcess = [&](ScriptedEffect& effect, float** inputs, float** outputs, std::int32_t frames)
    {
        outInputs.clear();
        for (std::int32_t i = 0; i < effect.Effect().numInputs; ++i)
            outInputs += fmt::format("{} ", inputs[i][frames - 1]);
        if (effect.Effect().numInputs > 1 && inputs[0] == inputs[1])
            outInputs += "shared ";
        for (std::int32_t i = 0; i < effect.Effect().numOutputs; ++i)
            std::fill_n(outputs[i], frames, static_cast<float>(i + 1));
    };
}

/** What the host hears, a channel a number, of a block that is rendered whole and one in parts. */
std::string Heard(SRig& ioRig)
{
    std::string heard;
    for (const std::int32_t frames : {64, 2000})
    {
        for (std::size_t i = 0; i < ioRig.mCall->mInputs.size(); ++i)
            std::ranges::fill(ioRig.mCall->Input(i), 0.5F + static_cast<float>(i));
        for (std::size_t i = 0; i < ioRig.mCall->mOutputs.size(); ++i)
            std::ranges::fill(ioRig.mCall->Output(i), -99.0F);
        ioRig.Render(frames);
        for (std::size_t i = 0; i < ioRig.mCall->mOutputs.size(); ++i)
            heard += fmt::format("{} ", ioRig.mCall->Output(i)[static_cast<std::size_t>(frames) - 1]);
    }
    return heard;
}

TEST(Stems, AStereoPluginIsOfferedAndPlayedOnEachOfItsTracks)
{
    struct SRow
    {
        const char* mStems;
        bool mTakes; // the plug-in becomes as narrow as it is asked to
        const char* mInputs;
        const char* mOutputs;
    };
    for (const SRow& row :
         {SRow{"mono", false, "0.5 0.5 shared ", "1 3 4 1 3 4 "}, SRow{"mono", true, "0.5 ", "1 2 0 1 2 0 "},
          SRow{"mono-stereo", false, "0.5 0.5 shared ", "1 2 3 4 1 2 3 4 "},
          SRow{"stereo", false, "0.5 1.5 ", "1 2 3 4 1 2 3 4 "}})
    {
        SCOPED_TRACE(fmt::format("{} {}", row.mStems, row.mTakes));
        SRig rig(kStemsModule);
        rig.Script().mShape.numOutputs = 4;
        std::string asked;
        rig.Script().mHooks[effSetSpeakerArrangement] = [&](ScriptedEffect& effect, const SDispatch& call)
        {
            VstSpeakerArrangement input;
            std::memcpy(&input, reinterpret_cast<const void*>(call.mValue), sizeof(input));
            const auto* const output = static_cast<const VstSpeakerArrangement*>(call.mPointer);
            asked += fmt::format("{} to {}", input.numChannels, output->numChannels);
            rig.Script().mResults[effSetSpeakerArrangement] = row.mTakes ? 1 : 0;
            if (!row.mTakes)
                return;
            effect.Effect().numInputs = input.numChannels;
            effect.Effect().numOutputs = output->numChannels + 1; // and one of its auxiliary ones
        };
        std::string inputs;
        Sound(rig.Script(), inputs);
        rig.mModule = Expect(CModule::Open(rig.mBundle.Path().string(), rig.mLog));
        EXPECT_EQ(asked, ""); // to describe what is narrower than it is takes no question
        rig.mInstance = Expect(CInstance::Create(*rig.mModule, kHostedRate, {.mStems = row.mStems}));
        EXPECT_EQ(asked, std::string(row.mStems) == "stereo"        ? ""
                         : std::string(row.mStems) == "mono-stereo" ? "1 to 2"
                                                                    : "1 to 1");
        rig.mCall = rig.mInstance->MakeRenderCall();
        EXPECT_EQ(Heard(rig), row.mOutputs);
        EXPECT_EQ(inputs, row.mInputs);
    }
}

TEST(Stems, EachComponentHasAnIdentifierOfItsOwnAndTheFirstThePlugins)
{
    SRig rig(kStemsModule);
    rig.Script().mShape.uniqueID = AAX_FourCharCode("Abcd");
    rig.mModule = Expect(CModule::Open(rig.mBundle.Path().string(), rig.mLog));
    std::string seen;
    std::set<AAX_CPropertyValue> ids;
    for (const SComponent& component : rig.mModule->Effect().mComponents)
    {
        seen += NameOfStems(MainStemsOf(component)) + ", ";
        const PropertyList& properties = component.mProcs.front().mProperties;
        ids.insert(FindProperty(properties, kAAX_PropertyPluginID).value_or(0));
        EXPECT_EQ(FindProperty(properties, kAAX_PropertyProductID), AAX_FourCharCode("Abcd"));
    }
    EXPECT_EQ(seen, "mono, mono-stereo, stereo, ");
    // Songs are found by them, so they stay as they are.
    EXPECT_EQ(ids, (std::set<AAX_CPropertyValue>{AAX_FourCharCode("Abcd"),
                                                 static_cast<std::int32_t>(0x8A890BFFU), 0x65A63525}));
}

TEST(Stems, AMonoPluginIsDescribedForWhatItTakesAndAHostThatDoesNotTellHasTheFirst)
{
    SRig rig(kStemsModule);
    rig.Script().mShape.numInputs = rig.Script().mShape.numOutputs = 1;
    std::string inputs;
    Sound(rig.Script(), inputs);
    rig.mModule = Expect(CModule::Open(rig.mBundle.Path().string(), rig.mLog));
    ASSERT_EQ(rig.mModule->Effect().mComponents.size(), 1U);
    rig.mInstance = Expect(CInstance::Create(*rig.mModule, kHostedRate));
    SControllerState& controller = rig.mInstance->Host().Controller().State();
    controller.mInputStemFormat = controller.mOutputStemFormat = AAX_eStemFormat_None;
    EXPECT_EQ(rig.mInstance->Parameters().Initialize(rig.mInstance->Host().Unknown()), kAAX_Success);
    rig.mCall = rig.mInstance->MakeRenderCall();
    EXPECT_EQ(Heard(rig), "1 1 ");
    EXPECT_EQ(inputs, "0.5 ");
    EXPECT_FALSE(CInstance::Create(*rig.mModule, kHostedRate, {.mStems = "stereo"}));
}
} // namespace
