#pragma once
#include "Tools/aaxhost/player/InstanceState.h"

#include <string>

/**
 * Explains a state for a reader: the product, then chunk by chunk its record, and of the controls chunk and
 * the chunk with a plug-in's own state what is in them. A host needs to know nothing of this to keep a state.
 */
std::string StateReport(const SInstanceState& inState);
