#pragma once
#include <array>
#include <cstdint>

/** One MIDI message addressed to the plug-ins of a host. */
struct SMidiMsg
{
    static constexpr long kEveryPlugin = -1;

    std::array<std::uint8_t, 4> mMidiBytes{}; // status byte first; bytes beyond the message are 0
    long mTarget = kEveryPlugin;              // negative: every plug-in; else the one with this master index
};
