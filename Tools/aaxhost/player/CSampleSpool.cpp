#include "Tools/aaxhost/player/CSampleSpool.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fmt/format.h>

namespace
{
SProblem DiskProblem()
{
    return {fmt::format("The sound cannot be kept in a temporary file until its latency is known: {}.",
                        std::strerror(errno))};
}
} // namespace

COutcome<SDone> CSampleSpool::Write(std::span<const float* const> inChannels, std::int32_t inFrames)
{
    if (mFile == nullptr)
        mFile.reset(std::tmpfile());
    if (mFile == nullptr)
        return DiskProblem();
    mInterleaved.clear();
    for (std::int32_t i = 0; i < inFrames; ++i)
        for (const float* const channel : inChannels)
            mInterleaved.push_back(channel[i]);
    if (std::fwrite(mInterleaved.data(), sizeof(float), mInterleaved.size(), mFile.get()) !=
        mInterleaved.size())
        return DiskProblem();
    return SDone{};
}

COutcome<SDone> CSampleSpool::Read(std::int64_t inFrom, std::int64_t inTo, const Sink& inSink)
{
    constexpr std::int64_t kBlock = 4096; // frames
    if (inFrom >= inTo)
        return SDone{};
    const auto place = inFrom * static_cast<std::int64_t>(mChannels * sizeof(float));
    if (mFile == nullptr || std::fseek(mFile.get(), static_cast<long>(place), SEEK_SET) != 0)
        return DiskProblem();
    std::vector<std::vector<float>> buffers(mChannels, std::vector<float>(kBlock));
    std::vector<const float*> channels;
    channels.reserve(mChannels);
    for (const auto& buffer : buffers)
        channels.push_back(buffer.data());
    for (std::int64_t frame = inFrom; frame < inTo; frame += kBlock)
    {
        const auto frames = static_cast<std::size_t>(std::min(kBlock, inTo - frame));
        mInterleaved.resize(frames * mChannels);
        if (std::fread(mInterleaved.data(), sizeof(float), mInterleaved.size(), mFile.get()) !=
            mInterleaved.size())
            return DiskProblem();
        for (std::size_t i = 0; i < mInterleaved.size(); ++i)
            buffers[i % mChannels][i / mChannels] = mInterleaved[i];
        if (auto taken = inSink(channels, static_cast<std::int32_t>(frames)); !taken)
            return taken;
    }
    return SDone{};
}
