#pragma once
#include "Interfaces/AAX/AAX_Types.h"

class AAX_ITransport;

/** A MIDI node of a render call, owned by the host. The order of the declarations is the order of the slots.
 */
class AAX_IMIDINode
{
public:
    virtual ~AAX_IMIDINode() = default;
    virtual AAX_CMidiStream* GetNodeBuffer() = 0; // the packets of this block
    virtual AAX_Result PostMIDIPacket(AAX_CMidiPacket* packet) = 0;
    virtual AAX_ITransport* GetTransport() = 0; // only of a transport node
};
