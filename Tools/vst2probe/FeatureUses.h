#pragma once
#include "Tools/vst2probe/PluginFacts.h"

#include <string>
#include <vector>

/** What a feature of a product does for one plug-in. */
struct SFeatureUse
{
    const char* name;   // in FEATURES of add_aax_adapter()
    bool isUsed;        // else the plug-in behaves as without it
    std::string reason; // a sentence
};

/** Every feature there is, in the order of cmake/ProductFeatures.cmake. */
std::vector<SFeatureUse> FeatureUses(const SPluginFacts& inFacts);
