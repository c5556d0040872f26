#include "Tools/aaxhost/player/SRenderCall.h"

#include "Tools/aaxhost/host/CHostTransport.h"

#include <algorithm>

namespace
{
std::vector<std::vector<float>> MakeBuffers(std::int32_t inChannels)
{
    return std::vector<std::vector<float>>(static_cast<std::size_t>(inChannels),
                                           std::vector<float>(SRenderCall::kBufferFrames, 0.0F));
}

std::vector<float*> PointersTo(std::vector<std::vector<float>>& ioBuffers)
{
    std::vector<float*> pointers;
    // An array of no channels is an array all the same: its address is not null.
    pointers.reserve(ioBuffers.size() + 1);
    for (auto& buffer : ioBuffers)
        pointers.push_back(buffer.data());
    return pointers;
}
} // namespace

SRenderCall::SRenderCall(const SComponent& inComponent, std::int32_t inInputChannels,
                         std::int32_t inOutputChannels, CHostLog& inLog, CHostTransport& inTransport)
    : mInputBuffers(MakeBuffers(inInputChannels)), mOutputBuffers(MakeBuffers(inOutputChannels))
{
    mInputs = PointersTo(mInputBuffers);
    mOutputs = PointersTo(mOutputBuffers);
    mMeterPointer = nullptr;

    AAX_CFieldIndex lastField = 0;
    for (const SField& field : inComponent.mFields)
        lastField = std::max(lastField, field.mIndex);
    mSlots.resize(lastField + std::size_t{1}, nullptr);
    mBlocks.reserve(inComponent.mFields.size()); // the slots point into what these own
    for (const SField& field : inComponent.mFields)
        AddField(field, inLog, inTransport);
}

void SRenderCall::AddField(const SField& inField, CHostLog& inLog, CHostTransport& inTransport)
{
    void*& slot = mSlots[inField.mIndex];
    switch (inField.mKind)
    {
    case EFieldKind::AudioIn: slot = mInputs.data(); break;
    case EFieldKind::AudioOut: slot = mOutputs.data(); break;
    case EFieldKind::AudioBufferLength: slot = &mFrames; break;
    case EFieldKind::SampleRate: slot = &mSampleRate; break;
    case EFieldKind::Clock: slot = &mClock; break;
    case EFieldKind::SideChainIn: slot = &mSideChainChannel; break;
    case EFieldKind::Reserved:
    case EFieldKind::DmaInstance: slot = nullptr; break; // this host has neither
    case EFieldKind::DataInPort:
    case EFieldKind::PrivateData:
        mBlocks.push_back({inField.mIndex, inField.mKind,
                           std::vector<std::uint64_t>(inField.mSize / sizeof(std::uint64_t) + 1),
                           inField.mSize});
        slot = mBlocks.back().mWords.data();
        break;
    case EFieldKind::MidiNode:
    {
        const bool isTransport = inField.mNodeType == AAX_eMIDINodeType_Transport;
        mNodes.push_back({inField.mIndex, inField.mNodeType,
                          std::make_unique<CHostMidiNode>(inLog, isTransport ? &inTransport : nullptr)});
        slot = static_cast<AAX_IMIDINode*>(mNodes.back().mNode.get());
        break;
    }
    case EFieldKind::Meters:
        mMeterTaps.assign(inField.mMeterIDs.size(), 0.0F);
        mMeterPointer = mMeterTaps.data();
        slot = &mMeterPointer;
        break;
    }
}

void** SRenderCall::Slot(AAX_CFieldIndex inField) noexcept
{
    return inField < mSlots.size() ? &mSlots[inField] : nullptr;
}

CHostMidiNode* SRenderCall::FindNode(AAX_EMIDINodeType inType) noexcept
{
    const auto found =
        std::find_if(mNodes.begin(), mNodes.end(), [=](const SNode& node) { return node.mType == inType; });
    return found == mNodes.end() ? nullptr : found->mNode.get();
}
