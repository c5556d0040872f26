#pragma once
#include "Source/CChannelExtension.h"

#include <optional>

class CVst2Plugin;

/** What a host was told of the effect's channels and MIDI, and what it makes every render record by. */
struct SDescribedShape
{
    long mInputChannels = 0;  // of the main input stem
    long mOutputChannels = 0; // of the main output stem and the auxiliary ones
    bool mHasInputNode = false;
    bool mHasOutputNode = false;
    long mMainOutputChannels = 0; // of the main output stem alone
    // Of an instance whose main stems are not as wide as the plug-in's main ports.
    ESecondChannel mSecondInput = ESecondChannel::kHosts;
    ESecondChannel mSecondOutput = ESecondChannel::kHosts;
};

/** What a copy of the plug-in is described as. */
SDescribedShape ShapeOf(const CVst2Plugin& inPlugin);

/**
 * Keeps what was first described for the instances of this process: another copy of the plug-in may list
 * other ports, and the host keeps to what it was told. Threads: any.
 */
void RememberDescription(const SDescribedShape& inShape);
/** @return nothing where nothing was described in this process. */
std::optional<SDescribedShape> RememberedDescription();
