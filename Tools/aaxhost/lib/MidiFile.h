#pragma once
#include "Tools/aaxhost/lib/COutcome.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

/** A channel message at its time. */
struct SMidiEvent
{
    double mSeconds = 0.0;
    std::array<std::uint8_t, 3> mBytes{}; // status byte first
    std::uint8_t mLength = 0;
};

/**
 * Reads a Standard MIDI File of format 0 or 1 with a division in ticks; one that is cut short is refused.
 *
 * @return the channel messages of all tracks in the order of their times, the file's own tempo changes taken
 * into account. System messages are left out: a packet of the host's MIDI nodes has no room for them.
 */
COutcome<std::vector<SMidiEvent>> ReadMidiFile(const std::string& inPath);
/** The same from memory. @param inName what a problem's sentence calls it. */
COutcome<std::vector<SMidiEvent>> MidiFromBytes(std::span<const std::uint8_t> inBytes,
                                                const std::string& inName);
