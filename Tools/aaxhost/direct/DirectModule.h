#pragma once
#include "Tools/aaxhost/direct/SServices.h"
#include "Tools/aaxhost/player/CModule.h"

/**
 * Puts the plug-in itself in the place of the module's code: what the module described stays, but its
 * instances are from now on the plug-in called directly, with as little between as a host of the plug-in's
 * own kind has. So whatever was looked at through the module can be looked at without it.
 *
 * Threads: the main thread; there are no instances yet. One module of a process at a time.
 */
void UnwrapPlugin(CModule& ioModule, const SServices& inServices);
