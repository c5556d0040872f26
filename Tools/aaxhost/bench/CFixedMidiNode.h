#pragma once
#include "Interfaces/AAX/AAX_IMIDINode.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/** A MIDI node whose packets stay the same from block to block. */
class CFixedMidiNode final : public AAX_IMIDINode
{
public:
    explicit CFixedMidiNode(AAX_ITransport& inTransport) : mTransport(inTransport) {}
    /** Controller changes, spread over the block. */
    void SetPackets(std::size_t inCount, std::int32_t inFrames);
    /** One note-on at the start of the block. */
    void SetNote(std::uint8_t inNote);

    AAX_CMidiStream* GetNodeBuffer() override { return &mStream; }
    AAX_Result PostMIDIPacket(AAX_CMidiPacket*) override { return kAAX_Success; }
    AAX_ITransport* GetTransport() override { return &mTransport; }

private:
    AAX_ITransport& mTransport;
    std::vector<AAX_CMidiPacket> mPackets;
    AAX_CMidiStream mStream{0, nullptr};
};
