#pragma once
#include "Tools/support/COutcome.h"

#include <filesystem>
#include <string>
#include <vector>

/** A plug-in to look at, and what its row and its files are called. */
struct SFoundPlugin
{
    std::string mName; // no other plug-in of the search has it
    std::filesystem::path mPath;
};

/**
 * The plug-ins below folders: files `*.so` and bundle folders `*.vst`; links are followed, bundles of other
 * kinds are left out. What is given itself and is a file or a bundle is taken as it is. Each is there once,
 * by name.
 *
 * @param inPattern of the names without their extension, with `*` and `?`; empty: all.
 * @return a problem where something is not there, or a folder that was given cannot be read.
 */
COutcome<std::vector<SFoundPlugin>> FindPlugins(const std::vector<std::string>& inPlaces,
                                                const std::string& inPattern);

/** Text that is another one once a file, or any file in a folder, has changed; empty where there is none. */
std::string StampOf(const std::filesystem::path& inPath);
