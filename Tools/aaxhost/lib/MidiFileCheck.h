#pragma once
#include <cstdint>
#include <span>

/**
 * Whether the bytes are a Standard MIDI File whose chunks and events are whole and well formed.
 *
 * WORKAROUND: libsmf ends the process with an assertion where an event runs over the end of its track, so
 * nothing is given to it that was not walked through before.
 */
bool IsWholeMidiFile(std::span<const std::uint8_t> inBytes);
