#pragma once
#include "Tools/aaxhost/check/CRig.h"

#include <cstdint>
#include <span>
#include <vector>

/** What was recorded of the first output. */
std::vector<float> FirstOutput(const CRig& inRig);
/** Frames of a level that is measured; the noise below repeats after as many. */
inline constexpr std::int64_t kLevelFrames = 4096;
/** White noise at -12 dB of which every measurement has the same, so that its level is the same. */
SignalSource PeriodicNoise();
/** As a level in decibels of full scale, -120 at the least. What is not finite counts as silence. */
double LevelOf(std::span<const float> inSamples);
/** Renders so many frames. @return the level of the first output in dB, -120 at the least. */
double RenderLevel(CRig& ioRig, std::int64_t inFrames);
