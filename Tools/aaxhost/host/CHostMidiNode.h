#pragma once
#include "Interfaces/AAX/AAX_IMIDINode.h"

#include <cstddef>
#include <span>
#include <vector>

class CHostLog;

/**
 * A MIDI node of the render record.
 *
 * Threads: filled between render calls; the module's calls allocate nothing as long as it posts no more than
 * `kReservedPackets` packets.
 */
class CHostMidiNode final : public AAX_IMIDINode
{
public:
    /** @param inTransport what the node answers as its transport, may be null. */
    explicit CHostMidiNode(CHostLog& inLog, AAX_ITransport* inTransport = nullptr);
    CHostMidiNode(const CHostMidiNode&) = delete;
    CHostMidiNode& operator=(const CHostMidiNode&) = delete;

    /** @param inBytes status byte first; at most four, the rest is left out. */
    void Add(std::uint32_t inTimestamp, std::span<const std::uint8_t> inBytes);
    void Add(const AAX_CMidiPacket& inPacket);
    /** Forgets the packets of the last block; those that the module posted stay. */
    void Clear() noexcept;
    void SetTransport(AAX_ITransport* inTransport) noexcept { mTransport = inTransport; }
    /** The node answers null instead of its stream. */
    void HideStream(bool inHide) noexcept { mHideStream = inHide; }
    /** What the module posted so far. */
    const std::vector<AAX_CMidiPacket>& Posted() const noexcept { return mPosted; }

    AAX_CMidiStream* GetNodeBuffer() override;
    AAX_Result PostMIDIPacket(AAX_CMidiPacket* packet) override;
    AAX_ITransport* GetTransport() override;

    static constexpr std::size_t kReservedPackets = 1024;

private:
    CHostLog& mLog;
    AAX_ITransport* mTransport = nullptr;
    std::vector<AAX_CMidiPacket> mPackets;
    std::vector<AAX_CMidiPacket> mPosted;
    AAX_CMidiStream mStream{0, nullptr};
    bool mHideStream = false;
};
