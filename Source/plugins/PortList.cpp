#include "Source/plugins/PortList.h"

#include "Interfaces/VST2/AEffect.h"
#include "Source/plugins/CopyBounded.h"
#include "Source/plugins/SRoomyRecord.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

bool ListPorts(AEffect& inEffect, EPortDirection inDirection, long inChannelCount, bool inPortsFromCounts,
               std::vector<SIOPortDef>& outPorts)
{
    const bool isInput = inDirection == EPortDirection::kInput;
    const std::int32_t opcode = isInput ? effGetInputProperties : effGetOutputProperties;
    outPorts.clear();
    for (long pin = 0; pin < inChannelCount;)
    {
        SRoomyRecord<VstPinProperties> answer;
        VstPinProperties& properties = answer.mRecord;
        if (inEffect.dispatcher(&inEffect, opcode, static_cast<std::int32_t>(pin), 0, &answer, 0.0F) == 0)
        {
            if (pin == 0 && inPortsFromCounts)
            {
                outPorts = PortsFromChannelCount(inChannelCount);
            }
            return true;
        }
        const bool isStereo = (properties.flags & kVstPinIsStereo) != 0;
        if (!isStereo && (properties.flags & kVstPinUseSpeaker) != 0)
        {
            return false;
        }
        SIOPortDef& port = outPorts.emplace_back();
        port.channelCount = isStereo ? 2 : 1;
        if (isInput)
        {
            // A label may fill its field without a terminator.
            *std::rbegin(properties.label) = '\0';
            CopyBounded(port.name, properties.label);
        }
        pin += port.channelCount;
    }
    return true;
}

std::vector<SIOPortDef> PortsFromChannelCount(long inChannelCount)
{
    std::vector<SIOPortDef> ports(static_cast<std::size_t>((std::max(inChannelCount, 0L) + 1) / 2));
    for (SIOPortDef& port : ports)
    {
        port.channelCount = 2;
    }
    if (!ports.empty() && inChannelCount % 2 != 0)
    {
        ports.back().channelCount = 1;
    }
    return ports;
}
