#pragma once
#include <cstdint>
#include <span>
#include <string>

/**
 * Looks whether the bytes are a Standard MIDI File of format 0 or 1 whose chunks and events are whole.
 *
 * WORKAROUND: libsmf ends the process with an assertion where an event runs over the end of its track, so
 * nothing is given to it that was not walked through before.
 *
 * @return what is wrong, to follow the file's name in a sentence; empty when all is well.
 */
std::string FindMidiFileFault(std::span<const std::uint8_t> inBytes);

/** Ticks in a second of a file that counts in frames of time code; 0 where it counts in quarter notes. */
double TimeCodeTicks(std::uint16_t inDivision);
