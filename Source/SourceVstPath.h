#pragma once
#include <cstddef>

/** Bytes of the longest path of the wrapped plug-in, its terminator included. */
inline constexpr std::size_t kSourceVstPathSize = 4096;

/**
 * Writes the path of the wrapped plug-in, `source.vst` in the Resources folder of the bundle that this code
 * was loaded from.
 *
 * @param outPath   kSourceVstPathSize bytes; the empty text when the module's own path is unknown, has fewer
 *                  than two "/" or does not fit.
 */
void CreateSourceVstPath(char* outPath);

/** The same from a given module file's path, "…/Contents/<platform>/Name". */
void CreateSourceVstPath(const char* inModulePath, char* outPath);

/** The path that every instance loads; valid for the module's life. Host's main thread. */
char* GetSourcePath();
