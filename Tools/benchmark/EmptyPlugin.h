#pragma once
#include "Interfaces/VST2/AEffect.h"

/**
 * What a benchmark needs of the plug-in that does nothing: the calls that its instances would make.
 *
 * All counts are of the instances alive. Threads: the main thread.
 */
struct SEmptyPluginAccess
{
    int (*mCountInstances)();
    /** In order of creation. */
    AEffect* (*mEffectAt)(int inIndex);
    /** The host's callback, as the last instance was given it. */
    audioMasterCallback (*mHost)();
};

/** Exported beside the plug-in's entry, under this name. */
inline constexpr const char* kEmptyPluginAccess = "GetEmptyPluginAccess";
using GetEmptyPluginAccessProc = const SEmptyPluginAccess* (*)();

/** Environment variables that an instance reads while it is made: whole numbers, 0 when they are not set. */
inline constexpr const char* kEmptyPluginParameters = "EMPTY_PLUGIN_PARAMETERS";
/** Bytes of its chunk; an instance without keeps none. */
inline constexpr const char* kEmptyPluginSends = "EMPTY_PLUGIN_SENDS"; // notes in each block
inline constexpr const char* kEmptyPluginChunkBytes = "EMPTY_PLUGIN_CHUNK_BYTES";
