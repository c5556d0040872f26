#include "Tools/aaxhost/bench/CFixedMidiNode.h"

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

void CFixedMidiNode::SetNote(std::uint8_t inNote)
{
    mPackets.assign(1, AAX_CMidiPacket{0, 3, {0x90, inNote, 100, 0}, 0});
    mStream = {1, mPackets.data()};
}
