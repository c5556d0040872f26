#pragma once
#include "Tools/aaxhost/host/CHostMidiNode.h"
#include "Tools/aaxhost/host/HostDescription.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

class CHostTransport;
class IACFUnknown;

/**
 * All that one render call of one instance gets. Everything that the module sees is open to change: a slot
 * may be set to null, a channel array be shortened, a node be emptied.
 *
 * The record owns what the slots point at; it is filled between render calls and must stay where it is.
 */
struct SRenderCall
{
    /** The largest block. Every audio buffer has room for it, whatever the frame count of the call. */
    static constexpr std::int32_t kBufferFrames = 4096;

    struct SNode
    {
        AAX_CFieldIndex mField = 0;
        AAX_EMIDINodeType mType = AAX_eMIDINodeType_LocalInput;
        std::unique_ptr<CHostMidiNode> mNode;
    };
    struct SBlock
    {
        AAX_CFieldIndex mField = 0;
        EFieldKind mKind = EFieldKind::PrivateData;
        std::vector<std::uint64_t> mWords; // 64-bit words so that a pointer is aligned in it
        std::uint32_t mSize = 0;           // bytes
    };

    /** @param inTransport what a transport node answers; outlives the record. */
    SRenderCall(const SComponent& inComponent, std::int32_t inInputChannels, std::int32_t inOutputChannels,
                CHostLog& inLog, CHostTransport& inTransport);
    SRenderCall(const SRenderCall&) = delete;
    SRenderCall& operator=(const SRenderCall&) = delete;

    /** The slot of a field; null when the component has no such field. */
    void** Slot(AAX_CFieldIndex inField) noexcept;
    /** The first node of that kind, null when none was described. */
    CHostMidiNode* FindNode(AAX_EMIDINodeType inType) noexcept;
    /** The whole buffer of a channel. */
    std::span<float> Input(std::size_t inChannel) { return mInputBuffers.at(inChannel); }
    std::span<float> Output(std::size_t inChannel) { return mOutputBuffers.at(inChannel); }
    /** What the process procedure gets for this instance. */
    void* Context() noexcept { return mSlots.data(); }

    std::vector<void*> mSlots;    // one pointer a field, by field index
    std::vector<float*> mInputs;  // one a channel
    std::vector<float*> mOutputs; // the main channels, then those of the auxiliary stems
    std::int32_t mFrames = kBufferFrames;
    float mSampleRate = 0.0F; // Hz
    std::int64_t mClock = 0;
    std::int32_t mSideChainChannel = 0; // 0: no side chain
    std::vector<SNode> mNodes;
    std::vector<SBlock> mBlocks; // private data and data ports
    std::vector<float> mMeterTaps;
    float* mMeterPointer = nullptr;

private:
    void AddField(const SField& inField, CHostLog& inLog, CHostTransport& inTransport);

    std::vector<std::vector<float>> mInputBuffers;
    std::vector<std::vector<float>> mOutputBuffers;
};
