#pragma once
#include "Tools/support/COutcome.h"

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
 * the same byte for byte. What is too long for the 32-bit sizes of a WAV file becomes an RF64 file.
 */
class CAudioWriter
{
public:
    /** Bytes of samples that fit a WAV file, with room for what stands before them. */
    static constexpr std::int64_t kMostWavBytes = 0xFFFFFFFF - 4096;

    /** @param inMostFrames more are not going to be written; 0 is right for all that is short. */
    static COutcome<CAudioWriter> Create(const std::string& inPath, int inRate, int inChannels,
                                         std::int64_t inMostFrames = 0,
                                         std::int64_t inMostWavBytes = kMostWavBytes);
    CAudioWriter(CAudioWriter&&) noexcept;
    CAudioWriter& operator=(CAudioWriter&&) noexcept;
    ~CAudioWriter();

    /** @param inChannels one array a channel, each of at least inFrames samples. */
    COutcome<SDone> Write(std::span<const float* const> inChannels, int inFrames);
    /** Completes the file and gives it its name; without this there is none, and an old one stays. */
    COutcome<SDone> Close();

private:
    struct SFile;
    explicit CAudioWriter(std::unique_ptr<SFile> inFile);

    std::unique_ptr<SFile> mFile;
};
