#include "Source/plugins/PortList.h"

#include "Interfaces/VST2/AEffect.h"
#include "Source/plugins/CopyBounded.h"
#include "Source/plugins/SRoomyRecord.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace
{
bool ListPins(AEffect& inEffect, EPortDirection inDirection, long inChannelCount,
              std::vector<SIOPortDef>& outPorts)
{
    const bool isInput = inDirection == EPortDirection::kInput;
    const std::int32_t opcode = isInput ? effGetInputProperties : effGetOutputProperties;
    for (long pin = 0; pin < inChannelCount;)
    {
        SRoomyRecord<VstPinProperties> answer;
        VstPinProperties& properties = answer.mRecord;
        if (inEffect.dispatcher(&inEffect, opcode, static_cast<std::int32_t>(pin), 0, &answer, 0.0F) == 0)
            return true;
        const bool isStereo = (properties.flags & kVstPinIsStereo) != 0;
        if (!isStereo && (properties.flags & kVstPinUseSpeaker) != 0)
            return false;
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
} // namespace

bool ListPorts(AEffect& inEffect, EPortDirection inDirection, long inChannelCount, bool inPortsFromCounts,
               std::vector<SIOPortDef>& outPorts)
{
    outPorts.clear();
    const bool goesOn = ListPins(inEffect, inDirection, inChannelCount, outPorts);
    if (inPortsFromCounts && outPorts.empty())
        outPorts = PortsFromChannelCount(inChannelCount);
    return goesOn;
}

void ListPorts(AEffect& inEffect, long inInputCount, long inOutputCount, bool inPortsFromCounts,
               std::vector<SIOPortDef>& outInputs, std::vector<SIOPortDef>& outOutputs)
{
    const bool goesOn =
        ListPorts(inEffect, EPortDirection::kInput, inInputCount, inPortsFromCounts, outInputs);
    outOutputs.clear();
    if (goesOn)
    {
        (void)ListPorts(inEffect, EPortDirection::kOutput, inOutputCount, inPortsFromCounts,
                        outOutputs); // nothing is left to be ended
    }
    else if (inPortsFromCounts)
    {
        outOutputs = PortsFromChannelCount(inOutputCount);
    }
}

std::vector<SIOPortDef> PortsFromChannelCount(long inChannelCount)
{
    std::vector<SIOPortDef> ports(static_cast<std::size_t>((std::max(inChannelCount, 0L) + 1) / 2));
    for (SIOPortDef& port : ports)
        port.channelCount = 2;
    if (!ports.empty() && inChannelCount % 2 != 0)
        ports.back().channelCount = 1;
    return ports;
}
