#pragma once
#include <array>

/** One input or output port of a wrapped plug-in. */
struct SIOPortDef
{
    // NOLINTBEGIN(readability-identifier-naming): the names that others build against
    std::array<char, 128> name{}; // NUL-terminated; always empty for outputs
    long channelCount = 1;        // 1 mono, 2 stereo
    // NOLINTEND(readability-identifier-naming)
};
