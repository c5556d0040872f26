#pragma once
#include <filesystem>

/** A phrase of eight seconds for an instrument: chords, a bass, a tune, pedal, modulation wheel and bend.
 * @return false when the file could not be written. */
bool WritePhrase(const std::filesystem::path& inFile);

/** Six seconds for an effect, stereo at 44,100 Hz: plucked strings here and there, noise bursts, silence for
 * the tail. The same in every run. @return false when the file could not be written. */
bool WriteSignal(const std::filesystem::path& inFile);

/** A parameter's way up and down again in eight seconds: lines "seconds,value", values from 0 to 1.
 * @return false when the file could not be written. */
bool WriteSweep(const std::filesystem::path& inFile);
