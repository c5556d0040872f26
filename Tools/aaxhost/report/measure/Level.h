#pragma once
#include "Tools/aaxhost/check/CRig.h"

#include <cstdint>
#include <vector>

/** What was recorded of the first output. */
std::vector<float> FirstOutput(const CRig& inRig);
/** Renders so many frames. @return the level of the first output in dB, -120 at the least. */
double RenderLevel(CRig& ioRig, std::int64_t inFrames);
