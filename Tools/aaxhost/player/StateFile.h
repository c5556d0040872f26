#pragma once
#include "Tools/aaxhost/player/InstanceState.h"

#include <string>

/**
 * State files: "aaxstate", the file's version, the product's identity, and each chunk as the host keeps it,
 * its record's fields and its data. All numbers are 32-bit and little-endian; a text or a chunk's data
 * follows its length.
 */

COutcome<SDone> WriteStateFile(const std::string& inPath, const SInstanceState& inState);
/** Refuses what is no state file, of a later version, or not whole. */
COutcome<SInstanceState> ReadStateFile(const std::string& inPath);

std::vector<std::byte> StateToBytes(const SInstanceState& inState);
COutcome<SInstanceState> StateFromBytes(std::span<const std::byte> inBytes);
