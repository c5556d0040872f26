#pragma once
#include "Interfaces/AAX/AAX_Types.h"

#include <cstddef>
#include <vector>

/** The bytes of a packet: grows and shrinks to what its handler asks for. */
class SPacketData
{
public:
    /** The bytes as they are; throws std::out_of_range when there are none. */
    const void* Get() const { return &mBytes.at(0); }
    /** Resizes to exactly `inSize` bytes; throws std::out_of_range when that is 0. Valid until the next call.
     */
    void* Get(std::size_t inSize)
    {
        mBytes.resize(inSize);
        return &mBytes.at(0);
    }

private:
    static constexpr std::size_t kFirstSize = 8; // room for one value of any type
    std::vector<std::byte> mBytes = std::vector<std::byte>(kFirstSize);
};

/** Data for one field of an algorithm's record; a handler fills it, the dispatcher posts it. */
class AAX_CPacket
{
public:
    explicit AAX_CPacket(AAX_CFieldIndex inField) : mID(inField) {}

    AAX_CFieldIndex mID = 0;
    bool mDirty = true;          // so that the first dispatch posts every packet
    std::uint32_t mDataSize = 0; // bytes that the last handler put in
    SPacketData mPacketData;
};
