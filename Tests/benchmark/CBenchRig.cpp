#include "Tests/benchmark/CBenchRig.h"

#include <stdexcept>

AAX_Result CFixedTransport::GetCurrentTempo(double* outTempo) const
{
    *outTempo = 120.0;
    return kAAX_Success;
}

AAX_Result CFixedTransport::IsTransportPlaying(bool* outPlaying) const
{
    *outPlaying = true;
    return kAAX_Success;
}

AAX_Result CFixedTransport::GetCurrentNativeSampleLocation(std::int64_t* outSamples) const
{
    *outSamples = mLocation;
    mLocation += 64;
    return kAAX_Success;
}

AAX_Result CFixedTransport::GetCurrentMeter(std::int32_t*, std::int32_t*) const
{
    return kAAX_ErrorUnsupported;
}
AAX_Result CFixedTransport::GetCurrentTickPosition(std::int64_t*) const { return kAAX_ErrorUnsupported; }
AAX_Result CFixedTransport::GetCurrentLoopPosition(bool*, std::int64_t*, std::int64_t*) const
{
    return kAAX_ErrorUnsupported;
}
AAX_Result CFixedTransport::GetCustomTickPosition(std::int64_t*, std::int64_t) const
{
    return kAAX_ErrorUnsupported;
}
AAX_Result CFixedTransport::GetBarBeatPosition(std::int32_t*, std::int32_t*, std::int64_t*,
                                               std::int64_t) const
{
    return kAAX_ErrorUnsupported;
}
AAX_Result CFixedTransport::GetTicksPerQuarter(std::uint32_t*) const { return kAAX_ErrorUnsupported; }
AAX_Result CFixedTransport::GetCurrentTicksPerBeat(std::uint32_t*) const { return kAAX_ErrorUnsupported; }
AAX_Result CFixedTransport::GetTimelineSelectionStartPosition(std::int64_t*) const
{
    return kAAX_ErrorUnsupported;
}
AAX_Result CFixedTransport::GetTimeCodeInfo(std::int32_t*, std::int32_t*) const
{
    return kAAX_ErrorUnsupported;
}
AAX_Result CFixedTransport::GetFeetFramesInfo(std::int32_t*, std::int64_t*) const
{
    return kAAX_ErrorUnsupported;
}

void CFixedMidiNode::SetPackets(std::size_t inCount, std::int32_t inFrames)
{
    mPackets.assign(inCount, {});
    for (std::size_t i = 0; i < inCount; ++i)
    {
        mPackets[i].mTimestamp = static_cast<std::uint32_t>(i * static_cast<std::size_t>(inFrames) / inCount);
        mPackets[i].mLength = 3;
        mPackets[i].mData[0] = 0xB0;
        mPackets[i].mData[1] = 1;
        mPackets[i].mData[2] = static_cast<std::uint8_t>(i % 128);
    }
    mStream = {static_cast<std::uint32_t>(inCount), mPackets.data()};
}

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
    {
        std::uint32_t noise = 1;
        for (float& sample : voice->mCall->Input(channel))
        {
            noise = noise * 1664525U + 1013904223U;
            sample = 0.25F * (static_cast<float>(noise >> 8) / 8388608.0F - 1.0F);
        }
    }
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
