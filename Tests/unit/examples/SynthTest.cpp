#include "Examples/synth/SynthParameters.h"
#include "Tests/doubles/CallGuard.h"
#include "Tests/unit/examples/ExamplePlugin.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{
constexpr int kSubPort = 4; // first channel of the port that has nothing but sines, an octave below the notes
constexpr double kRate = 48000.0;

double SubFrequency(double inNote) { return 440.0 * std::exp2((inNote - 81.0) / 12.0) / kRate; }

std::span<const float> Part(const std::vector<float>& inSamples, std::size_t inFirst, std::size_t inCount)
{
    return std::span(inSamples).subspan(inFirst, inCount);
}

std::vector<STestMessage> Phrase()
{
    return {{0, 0x90, 60, 100},  {0, 0x90, 64, 80},    {700, 0xB0, 64, 127},  {1500, 0x80, 60, 0},
            {1501, 0xB0, 1, 90}, {2048, 0xE0, 0, 100}, {2049, 0x91, 40, 127}, {2600, 0x90, 67, 10},
            {3000, 0xB0, 64, 0}, {3100, 0x90, 64, 0},  {4000, 0x90, 64, 90},  {5000, 0xB0, 123, 0}};
}

TEST(ExampleSynth, NoteSoundsFromItsSampleOnInEveryPort)
{
    for (const std::int32_t start : {0, 1, 99, 1023, 1024, 1500})
    {
        SCOPED_TRACE(start);
        CExamplePlugin synth(EXAMPLE_SYNTH_FILE);
        const Channels sound = synth.Render(3000, {{start, 0x90, 69, 127}});
        const auto first = static_cast<std::size_t>(start);
        for (const std::vector<float>& channel : sound)
        {
            EXPECT_EQ(Peak(Part(channel, 0, first)), 0.0F);
            EXPECT_GT(Peak(Part(channel, first, 3)), 0.0F);
            EXPECT_GT(Peak(Part(channel, first, 1000)), 0.02F);
        }
    }
}

TEST(ExampleSynth, CuttingTheBlocksDifferentlyChangesNoBit)
{
    CExamplePlugin synth(EXAMPLE_SYNTH_FILE);
    const Channels whole = synth.Render(8192, Phrase());
    for (const std::vector<std::int32_t>& blocks :
         {std::vector{1}, std::vector{37}, std::vector{512, 0, 3, 1024}, std::vector{8192}})
    {
        SCOPED_TRACE(blocks.front());
        CExamplePlugin other(EXAMPLE_SYNTH_FILE);
        EXPECT_TRUE(other.Render(8192, Phrase(), blocks) == whole);
        synth.Restart(); // leaves nothing behind of what was played before
        EXPECT_TRUE(synth.Render(8192, Phrase(), blocks) == whole);
    }
}

TEST(ExampleSynth, OffsetsOutsideTheBlockAreHeldToTheirTime)
{
    CExamplePlugin synth(EXAMPLE_SYNTH_FILE);
    synth.Send(std::vector<STestMessage>{{300, 0x90, 60, 127}, {-5, 0x90, 72, 127}});
    CExamplePlugin plain(EXAMPLE_SYNTH_FILE);
    EXPECT_TRUE(synth.Render(2000, {}, {256}) ==
                plain.Render(2000, {{0, 0x90, 72, 127}, {300, 0x90, 60, 127}}, {256}));
}

TEST(ExampleSynth, TheNinthNoteTakesTheOldestVoiceWithoutAClick)
{
    // At different phases of the voice that is taken.
    for (const std::int32_t steal : {24000, 24050, 24110, 24170})
    {
        SCOPED_TRACE(steal);
        CExamplePlugin synth(EXAMPLE_SYNTH_FILE);
        std::vector<STestMessage> messages;
        for (const std::uint8_t note : {70, 73, 76, 79, 82, 85, 88, 91})
        {
            messages.insert(messages.end(), {3 * (note - 70), 0x90, note, 100});
        }
        messages.push_back({steal, 0x90, 58, 100});
        const std::vector<float> sub = synth.Render(48000, messages)[kSubPort];
        const auto before = Part(sub, 12000, 12000);
        const auto after = Part(sub, 30000, 12000);
        EXPECT_GT(Strength(before, SubFrequency(70)), 0.01);
        EXPECT_LT(Strength(after, SubFrequency(70)), 0.001);
        EXPECT_GT(Strength(after, SubFrequency(73)), 0.01);
        EXPECT_GT(Strength(after, SubFrequency(58)), 0.01);

        const auto steepest = [&](std::size_t inFirst, std::size_t inCount)
        {
            float jump = 0.0F;
            for (std::size_t i = inFirst; i < inFirst + inCount; ++i)
            {
                jump = std::max(jump, std::abs(sub[i] - 2.0F * sub[i - 1] + sub[i - 2]));
            }
            return jump;
        };
        const auto at = static_cast<std::size_t>(steal);
        EXPECT_LT(steepest(at - 5, 10), 2.0F * steepest(20000, 3900));
    }
}

TEST(ExampleSynth, EveryWayToEndANoteEndsIt)
{
    struct SRow
    {
        const char* name;
        std::vector<STestMessage> messages; // after a note at 0
        bool sounds;                        // a second later
    };
    const SRow rows[] = {
        {"held", {}, true},
        {"note off", {{4800, 0x80, 69, 64}}, false},
        {"note on with velocity 0", {{4800, 0x90, 69, 0}}, false},
        {"note off of another key", {{4800, 0x80, 70, 64}}, true},
        {"note off of another channel", {{4800, 0x81, 69, 64}}, true},
        {"sustained", {{4000, 0xB0, 64, 64}, {4800, 0x80, 69, 0}}, true},
        {"pedal up", {{4000, 0xB0, 64, 127}, {4800, 0x80, 69, 0}, {9000, 0xB0, 64, 63}}, false},
        {"pedal up, key down", {{4000, 0xB0, 64, 127}, {9000, 0xB0, 64, 0}}, true},
        {"all notes off", {{4800, 0xB0, 123, 0}}, false},
        {"all sound off", {{4800, 0xB0, 120, 0}}, false},
        {"controllers reset", {{4000, 0xB0, 64, 127}, {4800, 0x80, 69, 0}, {5000, 0xB0, 121, 0}}, false},
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.name);
        CExamplePlugin synth(EXAMPLE_SYNTH_FILE);
        std::vector<STestMessage> messages = row.messages;
        messages.insert(messages.begin(), {0, 0x90, 69, 100});
        const Channels sound = synth.Render(60000, messages);
        const float late = Peak(Part(sound[0], 55000, 5000));
        EXPECT_EQ(late > 0.0F, row.sounds);
    }
}

TEST(ExampleSynth, BendAndWheelMoveThePitchAndVelocityTheLevel)
{
    const auto play = [](std::vector<STestMessage> inMessages, std::uint8_t inVelocity)
    {
        CExamplePlugin synth(EXAMPLE_SYNTH_FILE);
        inMessages.push_back({10, 0x90, 81, inVelocity});
        return synth.Render(48000, inMessages)[kSubPort];
    };
    const std::vector<float> plain = play({}, 127);
    EXPECT_GT(Strength(plain, SubFrequency(81)), 0.02);
    const std::vector<float> up = play({{0, 0xE0, 0x7F, 0x7F}}, 127);
    EXPECT_GT(Strength(up, SubFrequency(83)), 0.02);
    const std::vector<float> down = play({{0, 0xE0, 0, 0}}, 127);
    EXPECT_GT(Strength(down, SubFrequency(79)), 0.02);
    // Vibrato puts part of the sine's strength beside it, 5.5 Hz away.
    const double beside = SubFrequency(81) + 5.5 / kRate;
    EXPECT_GT(Strength(play({{0, 0xB0, 1, 127}}, 127), beside), 4.0 * Strength(plain, beside));
    EXPECT_LT(Peak(play({}, 40)), 0.5F * Peak(plain));
    EXPECT_GT(Peak(play({}, 40)), 0.0F);
}

TEST(ExampleSynth, EightLoudVoicesStayUnbentInEveryProgramAtEveryRate)
{
    for (const float rate : {44100.0F, 96000.0F, 192000.0F})
    {
        for (int program = 0; program < 4; ++program)
        {
            SCOPED_TRACE(testing::Message() << "program " << program << " at " << rate);
            CExamplePlugin synth(EXAMPLE_SYNTH_FILE, rate);
            synth.Dispatch(effSetProgram, 0, program);
            synth.Restart();
            std::vector<STestMessage> chord;
            for (const std::uint8_t note : {36, 43, 48, 52, 55, 60, 64, 72})
            {
                chord.push_back({0, 0x90, note, 127});
            }
            for (const std::vector<float>& channel : synth.Render(static_cast<std::int32_t>(rate), chord))
            {
                EXPECT_LT(Peak(channel), 0.75F);
                EXPECT_GT(Peak(channel), 0.1F);
            }
        }
    }
}

TEST(ExampleSynth, OvertonesAboveHalfTheRateComeBackHardlyAudible)
{
    CExamplePlugin synth(EXAMPLE_SYNTH_FILE);
    synth.Set(kDetune, 0.0F);
    synth.Set(kSustain, 1.0F);
    synth.Restart();
    const std::vector<float> sound = synth.Render(40000, {{0, 0x90, 96, 127}})[2];
    const auto steady = Part(sound, 20000, 20000);
    const double pitch = 2.0 * SubFrequency(96);
    const double fundamental = Strength(steady, pitch);
    EXPECT_GT(fundamental, 0.01);
    for (int overtone = 2; overtone < 40; ++overtone)
    {
        const double folded = std::abs(overtone * pitch - std::round(overtone * pitch));
        const double harmonics = folded / pitch;
        if (folded < 15000.0 / kRate && std::abs(harmonics - std::round(harmonics)) > 0.05)
        {
            // Plain edges give three times as much.
            EXPECT_LT(Strength(steady, folded), 0.05 * fundamental) << folded * kRate << " Hz";
        }
    }
}

TEST(ExampleSynth, NoSettingBreaksTheSound)
{
    for (const float rate : {8000.0F, 44100.0F, 192000.0F})
    {
        for (const float value : {0.0F, 0.5F, 1.0F})
        {
            for (std::int32_t odd = 0; odd < static_cast<std::int32_t>(kSynthParameterCount); ++odd)
            {
                SCOPED_TRACE(testing::Message() << rate << " Hz, all at " << value << " but " << odd);
                CExamplePlugin synth(EXAMPLE_SYNTH_FILE, rate);
                for (std::int32_t i = 0; i < static_cast<std::int32_t>(kSynthParameterCount); ++i)
                {
                    synth.Set(i, i == odd ? 1.0F - value : value);
                }
                const Channels sound = synth.Render(6000, {{0, 0x90, 0, 127},
                                                           {0, 0x90, 127, 127},
                                                           {0, 0x90, 64, 1},
                                                           {10, 0xE0, 0x7F, 0x7F},
                                                           {20, 0xB0, 1, 127},
                                                           {3000, 0xE0, 0, 0}});
                for (const std::vector<float>& channel : sound)
                {
                    EXPECT_LE(Peak(channel), 1.0F);
                }
            }
        }
    }
}

TEST(ExampleSynth, RenderingAllocatesNothingAndTooManyMessagesAreDropped)
{
    CExamplePlugin synth(EXAMPLE_SYNTH_FILE);
    {
        CCallGuard guard;
        CExamplePlugin other(EXAMPLE_SYNTH_FILE);
        ASSERT_EQ(guard.Stop().mAllocations > 0, CCallGuard::IsWatching());
    }

    synth.Send(std::vector<STestMessage>(10000, {0, 0x90, 60, 100}));
    std::vector<std::vector<float>> buffers(6, std::vector<float>(1024));
    std::vector<float*> outputs(buffers.size());
    std::ranges::transform(buffers, outputs.begin(), [](auto& ioBuffer) { return ioBuffer.data(); });
    CCallGuard guard;
    for (int block = 0; block < 10; ++block)
    {
        synth.Effect().processReplacing(&synth.Effect(), nullptr, outputs.data(), 1024);
        synth.Set(kCutoff, 0.1F * static_cast<float>(block));
    }
    EXPECT_EQ(guard.Stop(), SGuardedCalls());
    EXPECT_GT(Peak(buffers[0]), 0.01F);
}
} // namespace
