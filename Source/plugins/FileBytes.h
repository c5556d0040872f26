#pragma once
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

/** @return the whole file; nothing when it cannot be opened or read (a folder opens, but cannot be read). */
std::optional<std::vector<std::byte>> ReadFileBytes(const char* inPath);

/** Creates or replaces the file. @return false when it cannot be opened or not written to the end. */
bool WriteFileBytes(const char* inPath, std::span<const std::byte> inBytes);
