#pragma once
#include "Tools/aaxhost/lib/COutcome.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

/** Sound in memory, one vector of samples a channel, all of one length. */
struct SAudio
{
    int mRate = 0; // Hz
    std::vector<std::vector<float>> mChannels;

    std::int64_t Frames() const
    {
        return mChannels.empty() ? 0 : static_cast<std::int64_t>(mChannels.front().size());
    }
};

/** Reads any format that libsndfile knows. */
COutcome<SAudio> ReadAudioFile(const std::string& inPath);

/**
 * Writes a WAV file of 32-bit floating-point samples, block after block. Two files of the same samples are
 * the same byte for byte.
 */
class CAudioWriter
{
public:
    static COutcome<CAudioWriter> Create(const std::string& inPath, int inRate, int inChannels);
    CAudioWriter(CAudioWriter&&) noexcept;
    CAudioWriter& operator=(CAudioWriter&&) noexcept;
    ~CAudioWriter();

    /** @param inChannels one array a channel, each of at least inFrames samples. */
    COutcome<SDone> Write(std::span<const float* const> inChannels, int inFrames);
    /** Completes the file, which the destructor does too, but without a word on failure. */
    COutcome<SDone> Close();

private:
    struct SFile;
    explicit CAudioWriter(std::unique_ptr<SFile> inFile);

    std::unique_ptr<SFile> mFile;
};
