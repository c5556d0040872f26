#include "Tools/aaxhost/host/CHostMidiNode.h"

#include "Tools/aaxhost/host/CHostLog.h"

#include <algorithm>

CHostMidiNode::CHostMidiNode(CHostLog& inLog, AAX_ITransport* inTransport)
    : mLog(inLog), mTransport(inTransport)
{
    mPackets.reserve(kReservedPackets);
    mPosted.reserve(kMostPosted); // posting allocates nothing
}

void CHostMidiNode::Add(std::uint32_t inTimestamp, std::span<const std::uint8_t> inBytes)
{
    AAX_CMidiPacket packet{};
    packet.mTimestamp = inTimestamp;
    packet.mLength = static_cast<std::uint32_t>(std::min(inBytes.size(), sizeof(packet.mData)));
    std::copy_n(inBytes.begin(), packet.mLength, packet.mData);
    Add(packet);
}

void CHostMidiNode::Add(const AAX_CMidiPacket& inPacket) { mPackets.push_back(inPacket); }

void CHostMidiNode::Clear() noexcept { mPackets.clear(); }

void CHostMidiNode::ForgetPosted() noexcept
{
    mPosted.clear();
    mRefused = 0;
}

AAX_CMidiStream* CHostMidiNode::GetNodeBuffer()
{
    if (mLog.RecordRender("GetNodeBuffer") != kAAX_Success || mHideStream)
        return nullptr;
    mStream = {static_cast<std::uint32_t>(mPackets.size()), mPackets.data()};
    return &mStream;
}

AAX_Result CHostMidiNode::PostMIDIPacket(AAX_CMidiPacket* packet)
{
    if (const AAX_Result fault = mLog.RecordRender("PostMIDIPacket"))
        return fault;
    if (packet == nullptr)
        return kAAX_ErrorNullArgument;
    if (mPosted.size() == kMostPosted)
    {
        ++mRefused;
        return ACF_E_OUTOFMEMORY;
    }
    mPosted.push_back(*packet);
    return kAAX_Success;
}

AAX_ITransport* CHostMidiNode::GetTransport()
{
    return mLog.RecordRender("GetTransport") == kAAX_Success ? mTransport : nullptr;
}
