#pragma once
#include <cstdint>
#include <string>

// How the sentences of the checks write what was measured.

/** "-23.4 dB" of a linear level; "silence" of 0. */
std::string InDecibels(double inLevel);
/** "64 samples (1.33 ms)" */
std::string InSamples(std::int64_t inSamples, double inRate);
/** "12.5 KiB" or "3.2 MiB" */
std::string InBytes(double inBytes);
/** "1 object" and "2 objects" */
std::string Counted(std::int64_t inCount, const std::string& inNoun);
