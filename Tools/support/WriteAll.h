#pragma once
#include <string_view>

/** Writes all of it, whatever interrupts. @return false with errno when it cannot be written. */
bool WriteAll(int inFile, std::string_view inBytes);
