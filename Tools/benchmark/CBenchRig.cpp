#include "Tools/benchmark/CBenchRig.h"

#include "Tools/aaxhost/bench/Noise.h"

#include <stdexcept>

CBenchRig::CBenchRig(const std::filesystem::path& inModuleFile, const std::filesystem::path& inPlugin,
                     int inInstances)
    : mBundle(inModuleFile, inPlugin)
{
    auto module = CModule::Open(mBundle.Path().string(), mLog);
    if (!module)
        throw std::runtime_error(module.Problem().mSentence);
    mModule = std::move(*module);
    for (int i = 0; i < inInstances; ++i)
        AddInstance();
    SetBlock(64, 0);
}

void CBenchRig::AddInstance()
{
    auto instance = CInstance::Create(*mModule, kRate);
    if (!instance)
        throw std::runtime_error(instance.Problem().mSentence);
    auto voice = std::make_unique<SVoice>();
    voice->mInstance = std::move(*instance);
    voice->mCall = voice->mInstance->MakeRenderCall();
    voice->mNode = std::make_unique<CFixedMidiNode>(mTransport);
    for (const SRenderCall::SNode& node : voice->mCall->mNodes)
        *voice->mCall->Slot(node.mField) = static_cast<AAX_IMIDINode*>(voice->mNode.get());
    for (std::size_t channel = 0; channel < voice->mCall->mInputs.size(); ++channel)
        FillWithNoise(voice->mCall->Input(channel));
    mContexts.push_back(voice->mCall->Context());
    mProcess = voice->mInstance->ProcessProc();
    mInstances.push_back(std::move(voice));
}

void CBenchRig::SetBlock(std::int32_t inFrames, std::size_t inPackets)
{
    for (const auto& voice : mInstances)
    {
        voice->mCall->mFrames = inFrames;
        voice->mNode->SetPackets(inPackets, inFrames);
    }
}
