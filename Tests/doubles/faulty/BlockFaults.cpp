#include "Tests/doubles/faulty/CPlainEffect.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <memory>
#include <utility>

namespace
{
constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();

float PeakOf(const float* inChannel, std::int32_t inFrames)
{
    float peak = 0.0F;
    for (std::int32_t i = 0; i < inFrames; ++i)
        peak = std::max(peak, std::abs(inChannel[i]));
    return peak;
}

void RenderTimes(CPlainEffect& ioEffect, const SBlock& inBlock, float inFactor)
{
    ioEffect.Render(inBlock);
    for (float* output : {inBlock.mOutputs[0], inBlock.mOutputs[1]})
        std::transform(output, output + inBlock.mFrames, output,
                       [inFactor](float inSample) { return inFactor * inSample; });
}

/** Has what it renders multiplied by what a block gives. */
template <class Factor>
void Multiply(CPlainEffect& ioEffect, Factor inFactor)
{
    ioEffect.mOnBlock = [&ioEffect, inFactor](const SBlock& inBlock) mutable
    { RenderTimes(ioEffect, inBlock, inFactor(inBlock)); };
}

/** Two stereo outputs. */
void HaveFourOutputs(CPlainEffect& ioEffect)
{
    ioEffect.Effect()->numOutputs = 4;
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    {
        SCall call = inCall;
        call.mIndex %= inCall.mOpcode == effGetOutputProperties ? 2 : std::numeric_limits<int>::max();
        return ioEffect.Answer(call);
    };
}
} // namespace

// What holds of most blocks only: of some sizes, rates, signals and buffers.
namespace faults
{
/** Renders its frames in pairs, and crashes where one is left over. */
void Pairs(CPlainEffect& ioEffect)
{
    Multiply(
        ioEffect,
        [](const SBlock& inBlock)
        {
            if (inBlock.mFrames % 2 != 0)
                std::abort();
            return 1.0F;
        });
}

/** Divides by the number of frames, and never forgets it where that is none. */
void Mean(CPlainEffect& ioEffect)
{
    Multiply(
        ioEffect,
        [level = 0.0F](const SBlock& inBlock) mutable
        {
            const auto frames = static_cast<float>(inBlock.mFrames);
            level = 0.5F * level + PeakOf(inBlock.mOutputs[0], 0) / frames;
            return 1.0F + level;
        });
}

/** Has filters that are unstable above 100 kHz. */
void Rates(CPlainEffect& ioEffect)
{
    const auto rate = std::make_shared<float>(0.0F);
    ioEffect.mOnCall = [&ioEffect, rate](const SCall& inCall)
    {
        *rate = inCall.mOpcode == effSetSampleRate ? inCall.mOpt : *rate;
        return ioEffect.Answer(inCall);
    };
    Multiply(ioEffect, [rate](const SBlock&) { return *rate > 1e5F ? kNotANumber : 1.0F; });
}

/** Scales its second input where it lies. */
void Inputs(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        float* const input = inBlock.mInputs[1];
        std::transform(
            input, input + inBlock.mFrames, input, [](float inSample) { return 0.5F * inSample; });
        ioEffect.Render(inBlock);
    };
}

/** Clears its outputs ahead of reading its inputs. */
void Clears(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        for (float* output : {inBlock.mOutputs[0], inBlock.mOutputs[1]})
            std::fill_n(output, inBlock.mFrames, 0.0F);
        ioEffect.Render(inBlock);
    };
}

/** Keeps a level in its fourth output while it works, clears its third one and divides by the level. */
void Outputs(CPlainEffect& ioEffect)
{
    HaveFourOutputs(ioEffect);
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        ioEffect.Render(inBlock);
        std::fill_n(inBlock.mOutputs[3], inBlock.mFrames, 1.0F);
        std::fill_n(inBlock.mOutputs[2], inBlock.mFrames, 0.0F);
        for (std::int32_t i = 0; i < inBlock.mFrames; ++i)
        {
            const float level = std::exchange(inBlock.mOutputs[3][i], 0.0F);
            inBlock.mOutputs[2][i] = inBlock.mOutputs[0][i] / level;
        }
    };
}

/** Keeps its first output in its third one while it clears the fourth. */
void Mixes(CPlainEffect& ioEffect)
{
    HaveFourOutputs(ioEffect);
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        ioEffect.Render(inBlock);
        std::copy_n(inBlock.mOutputs[0], inBlock.mFrames, inBlock.mOutputs[2]);
        std::fill_n(inBlock.mOutputs[3], inBlock.mFrames, 0.0F);
        std::copy_n(inBlock.mOutputs[2], inBlock.mFrames, inBlock.mOutputs[0]);
    };
}

/** Is a little louder or softer in each instance, as old devices are. */
void Drift(CPlainEffect& ioEffect)
{
    static int made = 0;
    Multiply(ioEffect,
             [number = made++](const SBlock&) { return 1.0F - 0.1F * static_cast<float>(number % 7); });
}

/** Analyses its first second of sound when a block is as long as its window: with more than a second of work.
 */
void Analysis(CPlainEffect& ioEffect)
{
    Multiply(
        ioEffect,
        [frames = 0, isDone = false](const SBlock& inBlock) mutable
        {
            constexpr std::int32_t window = 256;
            constexpr int rate = 48000;
            constexpr std::clock_t work = CLOCKS_PER_SEC / 10 * 11;
            frames += PeakOf(inBlock.mInputs[0], inBlock.mFrames) > 0.0F ? inBlock.mFrames : 0;
            const bool isDue = !isDone && frames > rate && inBlock.mFrames == window;
            isDone = isDone || isDue;
            for (const std::clock_t begin = std::clock(); isDue && std::clock() - begin < work;)
            {
            }
            return 1.0F;
        });
}

/** Gives no number as soon as there is any sound. */
void Unstable(CPlainEffect& ioEffect)
{
    Multiply(
        ioEffect, [](const SBlock& inBlock)
        { return PeakOf(inBlock.mInputs[0], inBlock.mFrames) > 0.0F ? kNotANumber : 1.0F; });
}

/** Hums. */
void Hum(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        ioEffect.Render(inBlock);
        std::for_each_n(
            inBlock.mOutputs[0], inBlock.mFrames, [](float& outSample) { outSample += 0.01F; });
    };
}

/** Goes on with the last sample that was not silent. */
void Freeze(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect, last = 0.0F](const SBlock& inBlock) mutable
    {
        ioEffect.Render(inBlock);
        for (std::int32_t i = 0; i < inBlock.mFrames; ++i)
        {
            float& sample = inBlock.mOutputs[0][i];
            last = sample != 0.0F ? sample : last;
            sample = last;
        }
    };
}

/** Feeds back what comes out of it. */
void Feedback(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect, last = 0.0F](const SBlock& inBlock) mutable
    {
        ioEffect.Render(inBlock);
        for (std::int32_t i = 0; i < inBlock.mFrames; ++i)
            last = inBlock.mOutputs[0][i] += 0.5F * last;
    };
}

/** Divides by the level of its input. */
void Level(CPlainEffect& ioEffect)
{
    Multiply(
        ioEffect,
        [](const SBlock& inBlock)
        {
            const float peak = PeakOf(inBlock.mInputs[0], inBlock.mFrames);
            return peak > 0.0F ? peak * (1.0F / peak) : 1.0F;
        });
}

/** Compares its inputs, and divides by the second one's level. */
void Sides(CPlainEffect& ioEffect)
{
    Multiply(
        ioEffect,
        [](const SBlock& inBlock)
        {
            const float right = PeakOf(inBlock.mInputs[1], inBlock.mFrames);
            const float ratio = PeakOf(inBlock.mInputs[0], inBlock.mFrames) / right;
            return std::isnan(ratio) || ratio < 1e6F ? 1.0F : ratio;
        });
}

/** Takes decibels for factors. */
void Loud(CPlainEffect& ioEffect)
{
    Multiply(
        ioEffect, [](const SBlock&) { return 100.0F; });
}

/** Does what it does whatever its parameters are. */
void Deaf(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [](const SBlock& inBlock)
    {
        for (std::int32_t channel = 0; channel < 2; ++channel)
            std::copy_n(inBlock.mInputs[channel], inBlock.mFrames, inBlock.mOutputs[channel]);
    };
}

/** Plays as fast as the time moves on, and divides by it. */
void Tape(CPlainEffect& ioEffect)
{
    Multiply(
        ioEffect,
        [&ioEffect, last = -1.0](const SBlock& inBlock) mutable
        {
            const double position = ioEffect.Time()->samplePos;
            const bool hasStopped = inBlock.mFrames > 0 && position == last;
            last = inBlock.mFrames > 0 ? position : -1.0;
            return hasStopped ? kNotANumber : 1.0F;
        });
}

/** Keeps its place in a song as a positive number of 31 bits. */
void Place(CPlainEffect& ioEffect)
{
    Multiply(
        ioEffect,
        [&ioEffect](const SBlock&)
        {
            const double place = ioEffect.Time()->samplePos;
            if (place < 0.0 || place > std::numeric_limits<std::int32_t>::max())
                std::abort();
            return 1.0F;
        });
}

/** Has a row of 16 steps for a bar, and repeats no less than one. */
void Sequencer(CPlainEffect& ioEffect)
{
    Multiply(
        ioEffect,
        [&ioEffect](const SBlock&)
        {
            const VstTimeInfo& time = *ioEffect.Time();
            const bool isLooping = (time.flags & kVstTransportCycleActive) != 0;
            if (time.timeSigNumerator > 16 || (isLooping && time.cycleEndPos - time.cycleStartPos < 4.0))
                std::abort();
            return 1.0F;
        });
}
} // namespace faults
