#pragma once
#include "Tools/inspector/PluginFacts.h"

#include <string>
#include <vector>

/** What a feature of a product does for one plug-in. */
struct SFeatureUse
{
    const char* mName;   // in FEATURES of add_aax_adapter()
    bool mIsUsed;        // else the plug-in behaves as without it
    std::string mReason; // a sentence
};

/** Every feature there is, in the order of cmake/ProductFeatures.cmake. */
std::vector<SFeatureUse> FeatureUses(const SPluginFacts& inFacts);
