#pragma once
#include "Tools/aaxhost/host/CTimeline.h"
#include "Tools/support/COutcome.h"

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

/** What a MIDI file says that can be played. */
struct SMidiSong
{
    std::vector<SMidiEvent> mEvents;   // of all tracks, in the order of their times
    std::vector<STempoChange> mTempos; // in the order of their times
    std::vector<SMeterChange> mMeters; // in the order of their times
    std::size_t mSystemMessages = 0;   // left out: a packet of the host's MIDI nodes has no room for them
    std::size_t mForeignMeters = 0;    // left out: time signatures that no host can be set to
};

/**
 * Reads a Standard MIDI File of format 0 or 1; one that is cut short is refused. The times of a file that
 * counts in quarter notes follow its tempo changes, those of one that counts in time code do not.
 */
COutcome<SMidiSong> ReadMidiFile(const std::string& inPath);
/** The same from memory. @param inName what a problem's sentence calls it. */
COutcome<SMidiSong> MidiFromBytes(std::span<const std::uint8_t> inBytes, const std::string& inName);
