#include "Tests/doubles/faulty/CPlainEffect.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

// What is wrong with the blocks, or with the way they are made.
namespace faults
{
/** Leaks notes: a released one sounds on. */
AEffect* Notes(audioMasterCallback inHost)
{
    return MakePlain(inHost, {.mIsSynth = true, .mEndsNotes = false}).Effect();
}

/** Blocks in processReplacing: takes a lock and sleeps. */
void Blocking(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect, mutex = std::make_shared<std::mutex>()](const SBlock& inBlock)
    {
        const std::lock_guard lock(*mutex);
        std::this_thread::sleep_for(std::chrono::microseconds(1));
        ioEffect.Render(inBlock);
    };
}

/** Allocates in each block that it renders. */
void Heap(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        ioEffect.Render(inBlock);
        float* const output = inBlock.mOutputs[0];
        const std::vector<float> copy(output, output + inBlock.mFrames);
        std::ranges::copy(copy, output);
    };
}

/** Writes past its buffer: one frame more than it was asked for. */
void Bounds(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        ioEffect.Render(inBlock);
        inBlock.mOutputs[1][inBlock.mFrames] = 0.0F;
    };
}

/** Outputs NaN as soon as the input is loud. */
void Numbers(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        const float* const input = inBlock.mInputs[0];
        const bool isLoud = std::any_of(
            input, input + inBlock.mFrames, [](float inSample) { return std::abs(inSample) > 0.9F; });
        ioEffect.Render(inBlock);
        if (isLoud)
            inBlock.mOutputs[0][0] = std::sqrt(-1.0F);
    };
}

/** Keeps the buffers of its first block and looks at no others. */
void Pointers(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect, inputs = std::array<float*, 2>(),
                         outputs = std::array<float*, 2>()](const SBlock& inBlock) mutable
    {
        if (inputs[0] == nullptr)
        {
            std::copy_n(inBlock.mInputs, 2, inputs.begin());
            std::copy_n(inBlock.mOutputs, 2, outputs.begin());
        }
        ioEffect.Render({inputs.data(), outputs.data(), inBlock.mFrames});
    };
}

/** Adds what lay on the stack, taken for a silence that nobody wrote. */
void Unset(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        ioEffect.Render(inBlock);
        float silence[256];
        asm volatile("" : "=m"(silence)); // as far as the compiler knows, it is written here
        inBlock.mOutputs[0][0] += 0.0F * silence[128];
    };
}

/** Writes nothing into its second output where its input is silent. */
void Silence(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        constexpr std::int32_t largestBlock = 1024;
        const float* const input = inBlock.mInputs[1];
        const bool isSilent = std::all_of(
            input, input + inBlock.mFrames, [](float inSample) { return inSample == 0.0F; });
        float unused[largestBlock] = {};
        float* outputs[] = {inBlock.mOutputs[0],
                            isSilent && inBlock.mFrames <= largestBlock ? unused : inBlock.mOutputs[1]};
        ioEffect.Render({inBlock.mInputs, outputs, inBlock.mFrames});
    };
}
} // namespace faults
