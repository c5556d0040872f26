#pragma once
#include "Interfaces/AAX/AAX_IMIDINode.h"

#include <cstddef>
#include <span>
#include <vector>

class CHostLog;

/**
 * A MIDI node of the render record.
 *
 * Threads: filled between render calls; the module's calls allocate nothing.
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
    /** What the module posted since `ForgetPosted`. */
    const std::vector<AAX_CMidiPacket>& Posted() const noexcept { return mPosted; }
    /** How many packets were refused since then, because there was no room for more. */
    std::size_t Refused() const noexcept { return mRefused; }
    void ForgetPosted() noexcept;

    AAX_CMidiStream* GetNodeBuffer() override;
    AAX_Result PostMIDIPacket(AAX_CMidiPacket* packet) override;
    AAX_ITransport* GetTransport() override;

    static constexpr std::size_t kReservedPackets = 1024;
    /** As many can be posted; more are refused. */
    static constexpr std::size_t kMostPosted = 65536;

private:
    CHostLog& mLog;
    AAX_ITransport* mTransport = nullptr;
    std::vector<AAX_CMidiPacket> mPackets;
    std::vector<AAX_CMidiPacket> mPosted;
    std::size_t mRefused = 0;
    AAX_CMidiStream mStream{0, nullptr};
    bool mHideStream = false;
};
