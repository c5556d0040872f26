#pragma once
#include "Tools/support/COutcome.h"

#include <cstdint>
#include <span>
#include <string>

class CInstance;
struct SRenderJob;

/** What was seen of the samples on their way into the file. */
struct SRenderedSamples
{
    float mPeak = 0.0F; // the highest absolute value of those that are finite
    std::int64_t mFrames = 0;
    bool mEndsSilent = false; // the tail did
    std::int64_t mNotNumbers = 0;
    std::int64_t mInfinite = 0;
    std::int64_t mFirstBadFrame = -1; // of what is no finite number; -1: there is none
    std::size_t mFirstBadChannel = 0; // from 0

    void Add(std::span<const float* const> inChannels, std::int32_t inFrames);
};

/**
 * Renders into a WAV file, with a bar on the terminal. All samples are written as they come.
 *
 * @param inChannels as many channels of the instance's outputs, the first ones.
 */
COutcome<SRenderedSamples> RenderIntoFile(CInstance& inInstance, const SRenderJob& inJob,
                                          const std::string& inPath, std::int32_t inChannels);
