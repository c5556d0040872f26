#pragma once
#include "Tools/inspector/ProbePlugin.h"

#include <string>

/** Looks at the plug-in that a module wraps as vst2probe does, in processes of their own.
 * @param inLimitSeconds for each of them; 0: as long as vst2probe gives them. */
SProbeResult ProbePluginOf(const std::string& inModule, double inLimitSeconds = 0.0);
