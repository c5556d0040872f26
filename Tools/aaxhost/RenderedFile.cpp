#include "Tools/aaxhost/RenderedFile.h"

#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/player/Renderer.h"

#include <algorithm>
#include <cmath>

void SRenderedSamples::Add(std::span<const float* const> inChannels, std::int32_t inFrames)
{
    for (std::size_t channel = 0; channel < inChannels.size(); ++channel)
        for (std::int32_t i = 0; i < inFrames; ++i)
        {
            const float sample = inChannels[channel][i];
            if (std::isfinite(sample))
            {
                mPeak = std::max(mPeak, std::abs(sample));
                continue;
            }
            ++(std::isnan(sample) ? mNotNumbers : mInfinite);
            if (mFirstBadFrame < 0 || mFrames + i < mFirstBadFrame)
            {
                mFirstBadFrame = mFrames + i;
                mFirstBadChannel = channel;
            }
        }
    mFrames += inFrames;
}

COutcome<SRenderedSamples> RenderIntoFile(CInstance& inInstance, const SRenderJob& inJob,
                                          const std::string& inPath, std::int32_t inChannels)
{
    auto writer = CAudioWriter::Create(inPath, static_cast<int>(inJob.mRate), inChannels,
                                       inJob.mFrames + inJob.mMostTailFrames);
    if (!writer)
        return writer.Problem();
    SRenderedSamples samples;
    const auto sink = [&](std::span<const float* const> channels, std::int32_t frames)
    {
        const auto wanted = channels.first(static_cast<std::size_t>(inChannels));
        samples.Add(wanted, frames);
        return writer->Write(wanted, frames);
    };
    CProgressBar progress(static_cast<double>(inJob.mFrames + inJob.mMostTailFrames));
    const auto end = RenderOffline(inInstance, inJob, sink,
                                   [&](std::int64_t frames) { progress.Show(static_cast<double>(frames)); });
    if (!end)
        return end.Problem();
    samples.mEndsSilent = end->mIsSilent;
    if (const auto closed = writer->Close(); !closed)
        return closed.Problem();
    return samples;
}
