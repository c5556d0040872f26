#include "Tests/integration/FeatureRig.h"

#include "Tools/aaxhost/host/CHostMidiNode.h"

#include <gtest/gtest.h>

#include <utility>

namespace fs = std::filesystem;

fs::path ModuleWith(const std::string& inFeature)
{
    const fs::path& all = kAllFeaturesModule;
    const std::string name = "Feature_" + inFeature;
    const fs::path modules = all.parent_path().parent_path().parent_path().parent_path();
    return modules / (name + ".aaxplugin") / "Contents" / all.parent_path().filename() / (name + ".so");
}

SRig::SRig(const fs::path& inModule) : mBundle(inModule, ScriptedModule::FileOf("scripted_plugin.so"))
{
    Script().mShape.numInputs = Script().mShape.numOutputs = 2;
    Script().mShape.flags = effFlagsHasEditor | effFlagsProgramChunks;
    Script().mShape.numPrograms = 4;
    Script().mResults[effCanDo] = 1;
    Script().mBankChunk = {1, 2, 3};
}

SRig::~SRig()
{
    mCall.reset();
    mInstance.reset();
}

void SRig::Open()
{
    mModule = Expect(CModule::Open(mBundle.Path().string(), mLog));
    mInstance = Expect(CInstance::Create(*mModule, kHostedRate));
    mCall = mInstance->MakeRenderCall();
    mCall->mFrames = 64;
    Transport().mPlaying = true;
}

void SRig::Render(std::int32_t inFrames)
{
    mCall->mFrames = inFrames;
    mInstance->Render(*mCall);
    Transport().mSamplePosition += inFrames;
    mCall->mClock += inFrames;
    if (CHostMidiNode* const node = mCall->FindNode(AAX_eMIDINodeType_LocalInput))
        node->Clear();
}

void SRig::InProcess(std::function<void(ScriptedEffect&)> inDo)
{
    Script().mOnProcess = [doing = std::move(inDo)](ScriptedEffect& effect, float**, float**, std::int32_t)
    { doing(effect); };
}

void ExpectRows(std::span<const SFeatureRow> inRows)
{
    for (const SFeatureRow& row : inRows)
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
