#include "Source/features/CBypass.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

namespace
{
constexpr double kRate = 48000.0;
constexpr float kMostStep = 0.06F; // of a sine of 440 Hz at full scale, in a sample

float SineAt(std::int64_t inSample)
{
    return inSample < 0 ? 0.0F
                        : static_cast<float>(std::sin(2.0 * std::numbers::pi * 440.0 *
                                                      static_cast<double>(inSample) / kRate));
}

/** Two inputs, three outputs of which two are the main one's, and a plug-in that turns its late input around.
 */
struct SPlayed
{
    explicit SPlayed(std::int64_t inLatency) : mLatency(inLatency)
    {
        mBypass.Configure(kRate, 2, 2);
        mBypass.SetLatency(inLatency);
    }
    void Play(std::int32_t inFrames)
    {
        std::vector<std::vector<float>> buffers(3, std::vector<float>(static_cast<std::size_t>(inFrames)));
        float* pointers[] = {buffers[0].data(), buffers[1].data(), buffers[2].data()};
        for (std::int32_t i = 0; i < inFrames; ++i)
            buffers[0][static_cast<std::size_t>(i)] = buffers[1][static_cast<std::size_t>(i)] =
                SineAt(mTime + i);
        mBypass.Take(pointers, 0, inFrames);
        for (auto& buffer : buffers) // it works in place
            for (std::int32_t i = 0; i < inFrames; ++i)
                buffer[static_cast<std::size_t>(i)] = -SineAt(mTime + i - mLatency);
        mBypass.Mix(pointers, 3, 0);
        mTime += inFrames;
        mMain.insert(mMain.end(), buffers[1].begin(), buffers[1].end());
        mAuxiliary.insert(mAuxiliary.end(), buffers[2].begin(), buffers[2].end());
    }
    float MostStep() const
    {
        float most = 0.0F;
        for (std::size_t i = 1; i < mMain.size(); ++i)
            most = std::max(most, std::abs(mMain[i] - mMain[i - 1]));
        return most;
    }

    CBypass mBypass;
    std::int64_t mLatency;
    std::int64_t mTime = 0;
    std::vector<float> mMain;
    std::vector<float> mAuxiliary;
};

TEST(Bypass, TheInputIsAsLateAsThePluginAndNothingElseIsHeard)
{
    for (const std::int64_t latency : {0, 1, 480, 1024, 200'000})
    {
        SCOPED_TRACE(latency);
        SPlayed played(latency);
        played.Play(512);
        EXPECT_EQ(played.mMain.back(), -SineAt(511 - latency)); // untouched
        played.mBypass.Switch(true);
        for (std::int64_t left = latency + 4096; left > 0; left -= 1000)
            played.Play(static_cast<std::int32_t>(std::min<std::int64_t>(left, 1000)));
        for (std::int64_t i = 1; i <= 500; ++i)
        {
            EXPECT_EQ(played.mMain[played.mMain.size() - static_cast<std::size_t>(i)],
                      SineAt(played.mTime - i - latency));
            EXPECT_EQ(played.mAuxiliary[played.mAuxiliary.size() - static_cast<std::size_t>(i)], 0.0F);
        }
        EXPECT_LE(played.MostStep(), kMostStep + 2.0F / 480.0F);
    }
}

TEST(Bypass, SwitchedAHundredTimesASecondInBlocksOfAnySizeMakesNoStep)
{
    for (const std::int64_t latency : {0, 64, 5000})
    {
        SCOPED_TRACE(latency);
        SPlayed played(latency);
        for (std::int32_t i = 0; i < 200; ++i)
        {
            played.mBypass.Switch(i % 2 == 0);
            for (std::int32_t left = 480; left > 0;)
            {
                const std::int32_t frames = std::min(left, 1 + (i * 37 + left * 11) % 300);
                played.Play(frames);
                left -= frames;
            }
        }
        EXPECT_LE(played.MostStep(), kMostStep + 2.0F / 480.0F);
    }
}

TEST(Bypass, AnotherLatencyFadesOverThePlugin)
{
    SPlayed played(64);
    played.mBypass.Switch(true);
    for (int i = 0; i < 10; ++i)
        played.Play(512);
    for (const std::int64_t latency : {480, 100, 3000})
    {
        played.mLatency = latency; // the plug-in's own step is not the bypass's
        played.mBypass.SetLatency(latency);
        for (int i = 0; i < 20; ++i)
        {
            played.Play(512);
            played.mBypass.TimerBeat();
        }
        EXPECT_EQ(played.mMain.back(), SineAt(played.mTime - 1 - latency));
    }
    played.mBypass.Switch(false);
    for (int i = 0; i < 4; ++i)
        played.Play(512);
    EXPECT_EQ(played.mMain.back(), -SineAt(played.mTime - 1 - 3000));
}
} // namespace
