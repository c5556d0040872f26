#pragma once
#include "Source/plugins/SIOPortDef.h"

#include <vector>

struct AEffect;

enum class EPortDirection
{
    kInput,
    kOutput
};

/**
 * Asks a plug-in for the ports of one direction, pin by pin, until one is not answered or names a speaker.
 *
 * @param inChannelCount   channels of that direction; 0 or negative: nothing is asked.
 * @param inPortsFromCounts whether a direction that is left without a port gets ports made from its channel
 * count.
 * @param outPorts         receives the ports after its old ones are dropped.
 * @return false when a pin that names a speaker ended the whole enumeration: the other direction is not asked
 * for either.
 */
bool ListPorts(AEffect& inEffect, EPortDirection inDirection, long inChannelCount, bool inPortsFromCounts,
               std::vector<SIOPortDef>& outPorts);

/** The inputs and then the outputs, with what that means for the outputs. */
void ListPorts(AEffect& inEffect, long inInputCount, long inOutputCount, bool inPortsFromCounts,
               std::vector<SIOPortDef>& outInputs, std::vector<SIOPortDef>& outOutputs);

/** @return stereo ports without names, the last one mono when the count is odd. */
std::vector<SIOPortDef> PortsFromChannelCount(long inChannelCount);
