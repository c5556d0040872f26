#pragma once
#include <filesystem>
#include <string>

/** @return the bytes of a file; empty where there is none, or none that can be read. */
std::string Contents(const std::filesystem::path& inFile);
