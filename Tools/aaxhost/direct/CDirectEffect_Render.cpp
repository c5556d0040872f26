#include "Tools/aaxhost/direct/CDirectEffect.h"

#include "Interfaces/AAX/AAX_IMIDINode.h"
#include "Interfaces/AAX/AAX_ITransport.h"

#include <algorithm>

namespace
{
/** What a slot points at; null where the record has no such field. */
template <class Pointed>
Pointed* InSlot(void* const* inSlots, const std::vector<SField>& inFields, EFieldKind inKind,
                AAX_EMIDINodeType inType = AAX_eMIDINodeType_LocalInput)
{
    for (const SField& field : inFields)
        if (field.mKind == inKind && (inKind != EFieldKind::MidiNode || field.mNodeType == inType))
            return static_cast<Pointed*>(inSlots[field.mIndex]);
    return nullptr;
}
} // namespace

void CDirectEffect::WriteTime(AAX_IMIDINode* inNode)
{
    AAX_ITransport* const transport = inNode != nullptr ? inNode->GetTransport() : nullptr;
    if (transport == nullptr)
        return;
    bool isPlaying = false;
    std::int64_t position = 0;
    std::int64_t ticks = 0;
    std::uint32_t ticksPerQuarter = 0;
    VstTimeInfo& time = mPlugin->Time();
    // What is not answered stays as it was.
    (void)transport->IsTransportPlaying(&isPlaying);
    (void)transport->GetCurrentNativeSampleLocation(&position);
    (void)transport->GetCurrentTempo(&time.tempo);
    (void)transport->GetCurrentMeter(&time.timeSigNumerator, &time.timeSigDenominator);
    (void)transport->GetCurrentTickPosition(&ticks);
    (void)transport->GetTicksPerQuarter(&ticksPerQuarter);
    time.samplePos = static_cast<double>(position);
    time.ppqPos = ticksPerQuarter != 0 ? static_cast<double>(ticks) / ticksPerQuarter : 0.0;
    time.flags = (isPlaying ? kVstTransportPlaying : 0) | kVstTempoValid | kVstTimeSigValid |
                 (ticksPerQuarter != 0 ? kVstPpqPosValid : 0);
    bool isLooping = false;
    std::int64_t begin = 0;
    std::int64_t end = 0;
    const bool tellsLoop = mUnwrapped.mServices.mWholeTime && ticksPerQuarter != 0 &&
                           transport->GetCurrentLoopPosition(&isLooping, &begin, &end) == kAAX_Success;
    if (!tellsLoop || begin >= end)
        return;
    time.cycleStartPos = static_cast<double>(begin) / ticksPerQuarter;
    time.cycleEndPos = static_cast<double>(end) / ticksPerQuarter;
    time.flags |= kVstCyclePosValid | (isLooping ? kVstTransportCycleActive : 0);
}

void CDirectEffect::TakePackets(AAX_IMIDINode* inNode)
{
    mEvents.clear();
    const AAX_CMidiStream* const stream = inNode != nullptr ? inNode->GetNodeBuffer() : nullptr;
    if (stream == nullptr || stream->mPackets == nullptr)
        return;
    for (std::uint32_t i = 0; i < std::min<std::size_t>(stream->mCount, kMostEvents); ++i)
    {
        const AAX_CMidiPacket& packet = stream->mPackets[i];
        SPluginEvent event{static_cast<std::int32_t>(packet.mTimestamp), {}};
        std::copy_n(packet.mData, std::min<std::size_t>(packet.mLength, event.mBytes.size()),
                    event.mBytes.begin());
        mEvents.push_back(event);
    }
}

void CDirectEffect::RenderPiece(const float* const* inInputs, float* const* inOutputs, std::int32_t inOffset,
                                std::int32_t inFrames, bool inIsLast)
{
    mPieceEvents.clear();
    // What lies beyond the block comes with its last piece, at the frame that the host has said.
    for (const SPluginEvent& event : mEvents)
        if (event.mOffset >= inOffset && (inIsLast || event.mOffset < inOffset + inFrames))
            mPieceEvents.push_back({event.mOffset - inOffset, event.mBytes});
    mPlugin->SendEvents(mPieceEvents);
    for (std::size_t i = 0; i < mInputs.size(); ++i)
    {
        const bool isGiven =
            i < static_cast<std::size_t>(mChannels.mInputs) && inInputs != nullptr && inInputs[i] != nullptr;
        // The interface has pointers to what it must not write to.
        mInputs[i] = isGiven ? const_cast<float*>(inInputs[i]) + inOffset : mSilence.data();
    }
    for (std::size_t i = 0; i < mOutputs.size(); ++i)
    {
        const bool isTaken = i < static_cast<std::size_t>(mChannels.mOutputs) && inOutputs != nullptr &&
                             inOutputs[i] != nullptr;
        mOutputs[i] = isTaken ? inOutputs[i] + inOffset : mUnheard[i].data();
    }
    AEffect& effect = mPlugin->Effect();
    if (effect.processReplacing != nullptr)
        effect.processReplacing(&effect, mInputs.data(), mOutputs.data(), inFrames);
    mPlugin->Time().samplePos += inFrames;
}

void CDirectEffect::Render(void* const* inSlots)
{
    const auto& fields = mUnwrapped.mFields;
    const auto* const frames = InSlot<const std::int32_t>(inSlots, fields, EFieldKind::AudioBufferLength);
    if (frames == nullptr || mPlugin == nullptr)
        return;
    const auto* const inputs = InSlot<const float* const>(inSlots, fields, EFieldKind::AudioIn);
    auto* const outputs = InSlot<float* const>(inSlots, fields, EFieldKind::AudioOut);
    WriteTime(InSlot<AAX_IMIDINode>(inSlots, fields, EFieldKind::MidiNode, AAX_eMIDINodeType_Transport));
    TakePackets(InSlot<AAX_IMIDINode>(inSlots, fields, EFieldKind::MidiNode));
    mIsRendering = true;
    // A block without frames is one all the same.
    const double position = mPlugin->Time().samplePos;
    for (std::int32_t offset = 0; offset == 0 || offset < *frames; offset += CDrivenPlugin::kMaxFrames)
        RenderPiece(inputs, outputs, offset, std::min(*frames - offset, CDrivenPlugin::kMaxFrames),
                    *frames - offset <= CDrivenPlugin::kMaxFrames);
    mPlugin->Time().samplePos = position; // only a transport moves it on
    mIsRendering = false;
    for (std::int32_t i = static_cast<std::int32_t>(mOutputs.size()); i < mChannels.mOutputs; ++i)
        if (outputs != nullptr && outputs[i] != nullptr)
            std::fill_n(outputs[i], *frames, 0.0F);
}
