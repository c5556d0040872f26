#pragma once
#include <cstdint>

/*
 * What a product decides about the plug-in it wraps. Declared here, defined by each product's own source;
 * the value in brackets is the default.
 */

/**
 * [0] Host version answered to a plug-in that asks before its effect is known, that is from inside its entry.
 * Many plug-ins refuse to load on 0; 2400 is what is answered later on.
 */
extern const std::int32_t kEntryHostVersion;

/**
 * [false] A direction whose first pin the plug-in answers with 0, or that has no port because a pin named a
 * speaker, gets its channels paired into stereo ports, an odd last one mono, all without names. When false
 * such a plug-in has no ports there.
 */
extern const bool kPortsFromCounts;

/** [false] The description has a MIDI input even where the plug-in has not said that it takes MIDI. */
extern const bool kMidiInput;
