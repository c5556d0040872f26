#pragma once
#include <string>

/** Bytes as an address in a page carries them. */
std::string Base64(const std::string& inBytes);
