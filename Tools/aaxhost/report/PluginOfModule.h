#pragma once
#include "Tools/inspector/ProbePlugin.h"

#include <string>

/** Looks at the plug-in that a module wraps as vst2probe does, in processes of their own. */
SProbeResult ProbePluginOf(const std::string& inModule);
