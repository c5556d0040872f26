#pragma once
#include "Tools/aaxhost/player/Renderer.h"
#include "Tools/support/COutcome.h"

#include <cstdint>
#include <span>
#include <string>

/** What was seen of the samples on their way into the file. */
struct SRenderedSamples
{
    float mPeak = 0.0F; // the highest absolute value of those that are finite
    std::int64_t mFrames = 0;
    SRenderEnd mEnd;
    std::int64_t mNotNumbers = 0;
    std::int64_t mInfinite = 0;
    std::int64_t mFirstBadFrame = -1; // of what is no finite number; -1: there is none
    std::size_t mFirstBadChannel = 0; // from 0

    void Add(std::span<const float* const> inChannels, std::int32_t inFrames);
};

/**
 * Renders into a WAV file, with a bar on the terminal. All samples are written as they come; where the job
 * makes up for the latency, without those by which the module's sound is late. As it may tell another latency
 * up to the last block, the sound waits in a file without a name until then.
 *
 * @param inChannels as many channels of the instance's outputs, the first ones.
 */
COutcome<SRenderedSamples> RenderIntoFile(CInstance& inInstance, const SRenderJob& inJob,
                                          const std::string& inPath, std::int32_t inChannels);
