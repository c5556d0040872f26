#include "Tests/unit/Source/AdapterTest.h"

AdapterTest::AdapterTest() { Script().mShape.uniqueID = 0x41626364; }

AdapterTest::~AdapterTest() { Stop(); }

void AdapterTest::Start()
{
    ASSERT_EQ(StartWithoutCoefficients(), kAAX_Success);
    (void)mInstance->GenerateCoefficients(); // fails where a test takes the host's controller away
    (void)Script().TakeLog();                // of that
    mLog.Clear();
}

AAX_Result AdapterTest::StartWithoutCoefficients()
{
    mInstance = static_cast<AaxAdapter_Parameters*>(AaxAdapter_Parameters::Create());
    mReference = ACFPtr<IACFUnknown>(static_cast<AAX_IACFEffectParameters*>(mInstance));
    mHost.SetEffectParameters(mReference.Get());
    const AAX_Result result = mInstance->Initialize(mHost.Unknown());
    (void)Script().TakeLog(); // of loading
    mLog.Clear();
    return result;
}

void AdapterTest::Stop()
{
    if (mInstance == nullptr)
        return;
    mHost.SetEffectParameters(nullptr);
    EXPECT_EQ(mInstance->Uninitialize(), kAAX_Success);
    mReference.Reset();
    mInstance = nullptr;
    EXPECT_EQ(mHost.References(), 0);
    EXPECT_TRUE(Script().mInstances.empty());
}

Lines AdapterTest::TakePluginCalls()
{
    Lines lines = Script().TakeLog();
    std::erase_if(lines, [](const std::string& inLine) { return inLine.starts_with("effGet"); });
    return lines;
}

Lines AdapterTest::TakeHostCalls()
{
    Lines lines = mLog.Calls();
    mLog.Clear();
    return lines;
}

void AdapterTest::Automate(std::int32_t inIndex, float inValue)
{
    Effect().Parameters()[static_cast<std::size_t>(inIndex)] = inValue;
    EXPECT_EQ(Effect().CallHost(audioMasterAutomate, inIndex, nullptr, inValue), 0);
}

CRenderBlock::CRenderBlock(AaxAdapter_Parameters& inInstance, std::size_t inInputs, std::size_t inOutputs,
                           std::int32_t inFrames)
    : mInputs(inInputs, std::vector<float>(static_cast<std::size_t>(inFrames), 1.0F)),
      mOutputs(inOutputs, std::vector<float>(2 * static_cast<std::size_t>(inFrames), kUntouched)),
      mFrames(inFrames),
      mInstance(&inInstance)
{
    for (auto& channel : mInputs)
        mInputPointers.push_back(channel.data());
    for (auto& channel : mOutputs)
        mOutputPointers.push_back(channel.data());
    mInfo.mAudioInputs = mInputPointers.data();
    mInfo.mAudioOutputs = mOutputPointers.data();
    mInfo.mNumSamples = &mFrames;
    mInfo.mPrivateData = &mInstance;
}

void CRenderBlock::Render()
{
    AAX_SInstrumentRenderInfo* const records[] = {&mInfo};
    AAX_CInstrumentParameters::StaticRenderAudio(records, records + 1);
}
