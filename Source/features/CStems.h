#pragma once
#include "Source/StemLayout.h"

#include <cstdint>
#include <vector>

class CVst2Plugin;
struct AEffect;
struct SDescribedShape;

/** The product's main stems (`kStems`) that the plug-in can have, as components: the first keeps the
 * plug-in's identifier, the others' follow from it and the stems. Where it can have none, its own. */
std::vector<SComponentChoice> ListStemComponents(CVst2Plugin& inPlugin);

/**
 * The main stems of one instance, where they are not those of the plug-in's main ports. The plug-in is
 * offered them; one that does not take them has the one input channel twice, and the second channel of its
 * output is unheard.
 *
 * Threads: the main thread.
 */
class CStems
{
public:
    /** Before the plug-in is switched on. @param inTold as the host says; of others than mono and stereo the
     * product's first are taken. */
    void Choose(const SStemPair& inTold, const CVst2Plugin& inPlugin);
    /** @param ioShape of the plug-in's own ports: becomes that of the stems. @param inEffect as it is
     * switched on. */
    void Fit(SDescribedShape& ioShape, const AEffect& inEffect) const;

private:
    SStemPair mStems;
    std::int32_t mInputs = 0; // channels of the plug-in before it was offered anything
    std::int32_t mOutputs = 0;
};
