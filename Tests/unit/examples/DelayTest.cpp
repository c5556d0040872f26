#include "Tests/unit/examples/ExamplePlugin.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace
{
enum : std::int32_t
{
    kTime,
    kFeedback,
    kTone,
    kMix
};
constexpr std::size_t kLatency = 64;

/** Both sides, an impulse at the given sample. */
Channels Impulse(std::size_t inFrames, std::size_t inAt)
{
    Channels input(2, std::vector<float>(inFrames));
    input[0][inAt] = 0.5F;
    input[1][inAt] = -0.25F;
    return input;
}

TEST(ExampleDelay, TheDrySoundIsHeldBackByTheLatencyItReportsAndOtherwiseUntouched)
{
    for (const float rate : {8000.0F, 44100.0F, 192000.0F})
    {
        SCOPED_TRACE(rate);
        CExamplePlugin delay(EXAMPLE_DELAY_FILE, rate);
        ASSERT_EQ(delay.Effect().initialDelay, static_cast<std::int32_t>(kLatency));
        delay.Set(kMix, 0.0F);
        delay.Restart();
        Channels expected = Impulse(3000, 100 + kLatency);
        EXPECT_TRUE(delay.Render(3000, {}, {17, 64, 1}, Impulse(3000, 100)) == expected);
    }
}

TEST(ExampleDelay, EchoesComeAtMultiplesOfTheTimeSet)
{
    struct SRow
    {
        float rate;
        float time; // normalized: 1 ms to 1 s
        std::size_t samples;
    };
    for (const SRow& row : {SRow{48000.0F, 0.0F, 48}, SRow{48000.0F, 1.0F, 48000},
                            SRow{192000.0F, 1.0F, 192000}, SRow{44100.0F, 0.1F, 4450}})
    {
        SCOPED_TRACE(testing::Message() << row.rate << " Hz, " << row.samples << " samples");
        CExamplePlugin delay(EXAMPLE_DELAY_FILE, row.rate);
        delay.Set(kTime, row.time);
        delay.Set(kMix, 1.0F);
        delay.Set(kFeedback, 1.0F);
        delay.Set(kTone, 1.0F);
        delay.Restart();
        const std::size_t frames = kLatency + 2 * row.samples + 10;
        const Channels sound =
            delay.Render(static_cast<std::int32_t>(frames), {}, {1000}, Impulse(frames, 0));
        const std::size_t first = kLatency + row.samples;
        EXPECT_EQ(Peak(std::span(sound[0]).first(first)), 0.0F);
        EXPECT_EQ(sound[0][first], 0.5F);
        EXPECT_EQ(sound[1][first], -0.25F);
        EXPECT_GT(sound[0][first + row.samples], 0.15F); // duller, and with 95 % of its level
    }
}

TEST(ExampleDelay, BlockCutsAndSharedBuffersChangeNoBit)
{
    Channels input = Impulse(6000, 5);
    for (std::size_t i = 0; i < 6000; ++i)
    {
        input[0][i] += static_cast<float>(std::sin(0.05 * static_cast<double>(i)));
    }
    CExamplePlugin delay(EXAMPLE_DELAY_FILE);
    delay.Set(kTime, 0.01F);
    delay.Restart();
    const Channels whole = delay.Render(6000, {}, {6000}, input);
    delay.Restart();
    EXPECT_TRUE(delay.Render(6000, {}, {1, 100, 33}, input) == whole);

    delay.Restart();
    float* buffers[] = {input[0].data(), input[1].data()};
    delay.Effect().processReplacing(&delay.Effect(), buffers, buffers, 6000);
    EXPECT_TRUE(input == whole);
}

TEST(ExampleDelay, NeitherFullFeedbackNorABrokenSampleStaysInTheLoop)
{
    CExamplePlugin delay(EXAMPLE_DELAY_FILE);
    delay.Set(kTime, 0.0F);
    delay.Set(kFeedback, 1.0F);
    delay.Set(kMix, 1.0F);
    delay.Restart();
    Channels input = Impulse(48000, 0);
    input[0][200] = std::numeric_limits<float>::quiet_NaN();
    input[1][300] = std::numeric_limits<float>::infinity();
    const Channels sound = delay.Render(48000, {}, {1024}, input);
    for (const std::vector<float>& channel : sound)
    {
        EXPECT_GT(Peak(std::span(channel).subspan(1000, 1000)), 0.0F);
        EXPECT_LT(Peak(std::span(channel).subspan(47000)), 1e-6F);
    }
}

TEST(ExampleDelay, MovingTheTimeMakesNoStepInASteadySound)
{
    CExamplePlugin delay(EXAMPLE_DELAY_FILE);
    delay.Set(kFeedback, 0.0F);
    delay.Set(kMix, 1.0F);
    delay.Set(kTime, 0.1F);
    delay.Restart();
    Channels input(2, std::vector<float>(48000));
    for (std::size_t i = 0; i < 48000; ++i)
    {
        // Whole periods, so that it can be played twice without a step of its own.
        input[0][i] =
            static_cast<float>(std::sin(2.0 * std::numbers::pi * 76.0 * static_cast<double>(i) / 48000.0));
    }
    (void)delay.Render(48000, {}, {1024}, input);
    delay.Set(kTime, 0.05F);
    const std::vector<float> sound = delay.Render(24000, {}, {1024}, input)[0];
    for (std::size_t i = 1; i < sound.size(); ++i)
    {
        ASSERT_LT(std::abs(sound[i] - sound[i - 1]), 0.1F) << i;
    }
}
} // namespace
