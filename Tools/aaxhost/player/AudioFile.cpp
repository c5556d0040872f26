#include "Tools/aaxhost/player/AudioFile.h"

#include "Tools/support/CWholeFile.h"

#include <fmt/format.h>
#include <sndfile.h>

namespace
{
using SndfilePtr = std::unique_ptr<SNDFILE, int (*)(SNDFILE*)>;

SndfilePtr Owned(SNDFILE* inFile) { return {inFile, &sf_close}; }
} // namespace

struct CAudioWriter::SFile
{
    std::string mPath;
    CWholeFile mTarget;
    SndfilePtr mHandle; // writes by the target's descriptor, so it goes first
    std::vector<float> mInterleaved;
};

COutcome<SAudio> ReadAudioFile(const std::string& inPath)
{
    SF_INFO info{};
    const SndfilePtr file = Owned(sf_open(inPath.c_str(), SFM_READ, &info));
    if (file == nullptr || info.channels <= 0)
        return SProblem{
            fmt::format("The audio file '{}' cannot be read: {}", inPath, sf_strerror(file.get()))};

    SAudio audio;
    audio.mRate = info.samplerate;
    audio.mChannels.resize(static_cast<std::size_t>(info.channels));
    // The length that the file claims is not trusted with memory: what is there is read piece by piece.
    constexpr sf_count_t kPieceFrames = 65536;
    std::vector<float> piece(static_cast<std::size_t>(kPieceFrames * info.channels));
    for (sf_count_t frames = kPieceFrames; frames == kPieceFrames;)
    {
        frames = sf_readf_float(file.get(), piece.data(), kPieceFrames);
        for (std::size_t channel = 0; channel < audio.mChannels.size(); ++channel)
            for (sf_count_t i = 0; i < frames; ++i)
                audio.mChannels[channel].push_back(
                    piece[static_cast<std::size_t>(i) * audio.mChannels.size() + channel]);
    }
    return audio;
}

CAudioWriter::CAudioWriter(std::unique_ptr<SFile> inFile) : mFile(std::move(inFile)) {}
CAudioWriter::CAudioWriter(CAudioWriter&&) noexcept = default;
CAudioWriter& CAudioWriter::operator=(CAudioWriter&&) noexcept = default;
CAudioWriter::~CAudioWriter() = default;

COutcome<CAudioWriter> CAudioWriter::Create(const std::string& inPath, int inRate, int inChannels,
                                            std::int64_t inMostFrames, std::int64_t inMostWavBytes)
{
    const std::int64_t frameBytes = static_cast<std::int64_t>(sizeof(float)) * inChannels;
    const bool fitsWav = inMostFrames <= inMostWavBytes / frameBytes;
    SF_INFO info{};
    info.samplerate = inRate;
    info.channels = inChannels;
    info.format = (fitsWav ? SF_FORMAT_WAV : SF_FORMAT_RF64) | SF_FORMAT_FLOAT;
    auto target = CWholeFile::Open(inPath);
    if (!target)
        return target.Problem();
    SndfilePtr handle = Owned(sf_open_fd(target->Descriptor(), SFM_WRITE, &info, SF_FALSE));
    auto file = std::make_unique<SFile>(SFile{inPath, std::move(*target), std::move(handle), {}});
    if (file->mHandle == nullptr)
        return SProblem{fmt::format("The file '{}' cannot be written: {}", inPath, sf_strerror(nullptr))};
    // The peak chunk holds the time of writing, which would make equal sounds unequal files.
    sf_command(file->mHandle.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
    return CAudioWriter(std::move(file));
}

COutcome<SDone> CAudioWriter::Write(std::span<const float* const> inChannels, int inFrames)
{
    const auto frames = static_cast<std::size_t>(inFrames);
    mFile->mInterleaved.resize(frames * inChannels.size());
    for (std::size_t channel = 0; channel < inChannels.size(); ++channel)
        for (std::size_t i = 0; i < frames; ++i)
            mFile->mInterleaved[i * inChannels.size() + channel] = inChannels[channel][i];
    if (sf_writef_float(mFile->mHandle.get(), mFile->mInterleaved.data(), inFrames) != inFrames)
        return SProblem{
            fmt::format("Writing '{}' failed: {}", mFile->mPath, sf_strerror(mFile->mHandle.get()))};
    return SDone{};
}

COutcome<SDone> CAudioWriter::Close()
{
    if (sf_close(mFile->mHandle.release()) != 0)
        return SProblem{fmt::format("Writing '{}' failed.", mFile->mPath)};
    return mFile->mTarget.Keep();
}
