#pragma once
#include "Tools/aaxhost/CommandSupport.h"

/** `bench`: measures what a module costs, beside the plug-in that it wraps. */
void AddCommandBench(CLI::App& ioApp, CommandAction& outAction);
