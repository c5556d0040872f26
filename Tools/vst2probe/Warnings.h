#pragma once
#include "Tools/vst2probe/PluginFacts.h"

#include <string>
#include <vector>

/**
 * @param inPortsFromCounts whether the product has this option.
 * @return what of a plug-in a host will not get or will not learn, a sentence each.
 */
std::vector<std::string> WarningsOf(const SPluginFacts& inFacts, bool inPortsFromCounts);
