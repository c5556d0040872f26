#pragma once
#include <cstdint>

// Meta events of a Standard MIDI File that this program reads and writes: their types.
inline constexpr std::uint8_t kMetaEndOfTrack = 0x2F;
inline constexpr std::uint8_t kMetaTempo = 0x51;
inline constexpr std::uint8_t kMetaTimeSignature = 0x58;
