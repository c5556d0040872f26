#include "Tools/aaxhost/RenderedFile.h"

#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/player/CSampleSpool.h"

#include <algorithm>
#include <cmath>
#include <utility>

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

namespace
{
/** Looks at samples and writes them. */
class CSampleFile
{
public:
    static COutcome<CSampleFile> Create(const SRenderJob& inJob, const std::string& inPath,
                                        std::int32_t inChannels)
    {
        auto writer = CAudioWriter::Create(inPath, static_cast<int>(inJob.mRate), inChannels,
                                           inJob.mFrames + inJob.mMostTailFrames);
        if (!writer)
            return writer.Problem();
        return CSampleFile(std::move(*writer));
    }

    COutcome<SDone> Write(std::span<const float* const> inChannels, std::int32_t inFrames)
    {
        mSamples.Add(inChannels, inFrames);
        return mWriter.Write(inChannels, inFrames);
    }
    COutcome<SRenderedSamples> Close(SRenderEnd inEnd)
    {
        if (const auto closed = mWriter.Close(); !closed)
            return closed.Problem();
        mSamples.mEnd = std::move(inEnd);
        return mSamples;
    }

private:
    explicit CSampleFile(CAudioWriter inWriter) : mWriter(std::move(inWriter)) {}

    CAudioWriter mWriter;
    SRenderedSamples mSamples;
};

/** Writes what was rendered from the frame of the latency on. */
COutcome<SDone> WriteCompensated(CSampleSpool& ioSpool, const SRenderJob& inJob, const SRenderEnd& inEnd,
                                 CSampleFile& ioFile)
{
    // A latency that has become shorter leaves more than was asked for, of which nobody waits for a tail.
    const std::int64_t end =
        inJob.mMostTailFrames > 0 ? inEnd.mFrames : std::min(inEnd.mFrames, inEnd.mLatency + inJob.mFrames);
    return ioSpool.Read(inEnd.mLatency, end,
                        [&](std::span<const float* const> channels, std::int32_t frames)
                        { return ioFile.Write(channels, frames); });
}
} // namespace

COutcome<SRenderedSamples> RenderIntoFile(CInstance& inInstance, const SRenderJob& inJob,
                                          const std::string& inPath, std::int32_t inChannels)
{
    auto file = CSampleFile::Create(inJob, inPath, inChannels);
    if (!file)
        return file.Problem();
    CSampleSpool spool(static_cast<std::size_t>(inChannels));
    const auto sink = [&](std::span<const float* const> channels, std::int32_t frames)
    {
        const auto wanted = channels.first(static_cast<std::size_t>(inChannels));
        return inJob.mCompensates ? spool.Write(wanted, frames) : file->Write(wanted, frames);
    };
    const auto end = [&]
    {
        CProgressBar progress(static_cast<double>(inJob.mFrames + inJob.mMostTailFrames));
        return RenderOffline(inInstance, inJob, sink,
                             [&](std::int64_t frames) { progress.Show(static_cast<double>(frames)); });
    }();
    if (!end)
        return end.Problem();
    if (inJob.mCompensates)
        if (const auto written = WriteCompensated(spool, inJob, *end, *file); !written)
            return written.Problem();
    return file->Close(*end);
}
