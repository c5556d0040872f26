#pragma once
#include "Tools/support/COutcome.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <span>
#include <vector>

/** Sound that waits on the disk, in a file without a name: gone with this object, also after a kill. */
class CSampleSpool
{
public:
    /** Takes no place on the disk before the first block. */
    explicit CSampleSpool(std::size_t inChannels) : mChannels(inChannels) {}

    /** @param inChannels one array a channel, each of at least inFrames samples. */
    COutcome<SDone> Write(std::span<const float* const> inChannels, std::int32_t inFrames);

    using Sink = std::function<COutcome<SDone>(std::span<const float* const> channels, std::int32_t frames)>;
    /** Hands over the frames from one on up to another, block by block; nothing is written after that. */
    COutcome<SDone> Read(std::int64_t inFrom, std::int64_t inTo, const Sink& inSink);

private:
    struct SCloser
    {
        void operator()(std::FILE* inFile) const { (void)std::fclose(inFile); } // it is given up
    };

    std::size_t mChannels;
    std::unique_ptr<std::FILE, SCloser> mFile;
    std::vector<float> mInterleaved;
};
