#pragma once
#include "Tools/aaxhost/player/CPlayhead.h"
#include "Tools/aaxhost/player/CPostedMidi.h"
#include "Tools/support/COutcome.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/**
 * A Standard MIDI File of format 0 in which everything stands at its time to within a few microseconds, also
 * where the file's tempo, which is in whole microseconds, is not quite the one that was heard.
 *
 * @param inMessages, inTimeline in the order of their times.
 */
std::vector<std::uint8_t> MidiToBytes(std::span<const SMidiMessage> inMessages,
                                      const SHeardTimeline& inTimeline, double inSeconds);

/** The same into a file. */
COutcome<SDone> WriteMidiFile(const std::string& inPath, std::span<const SMidiMessage> inMessages,
                              const SHeardTimeline& inTimeline, double inSeconds);
