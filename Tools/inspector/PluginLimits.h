#pragma once
#include "Tools/inspector/PluginFacts.h"

#include <string>
#include <vector>

/** Something that a product without features and options does not pass on for one plug-in. */
struct SPluginLimit
{
    const char* mWhat;     // as docs/limits.md calls it
    const char* mHow;      // what becomes of it, as said there
    const char* mLiftedBy; // the feature or option of a product that passes it on; empty: nothing does
    bool mIsOption;        // and not a feature
    std::string mReason;   // why it is of this plug-in: a sentence
};

/** What docs/limits.md says that concerns this plug-in, in its order. */
std::vector<SPluginLimit> LimitsOf(const SPluginFacts& inFacts);
