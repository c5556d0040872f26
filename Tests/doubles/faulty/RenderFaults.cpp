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
    return MakePlain(inHost, {.isSynth = true, .endsNotes = false}).Effect();
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
        float* const output = inBlock.outputs[0];
        const std::vector<float> copy(output, output + inBlock.frames);
        std::ranges::copy(copy, output);
    };
}

/** Writes past its buffer: one frame more than it was asked for. */
void Bounds(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        ioEffect.Render(inBlock);
        inBlock.outputs[1][inBlock.frames] = 0.0F;
    };
}

/** Outputs NaN as soon as the input is loud. */
void Numbers(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        const float* const input = inBlock.inputs[0];
        const bool isLoud = std::any_of(
            input, input + inBlock.frames, [](float inSample) { return std::abs(inSample) > 0.9F; });
        ioEffect.Render(inBlock);
        if (isLoud)
            inBlock.outputs[0][0] = std::sqrt(-1.0F);
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
            std::copy_n(inBlock.inputs, 2, inputs.begin());
            std::copy_n(inBlock.outputs, 2, outputs.begin());
        }
        ioEffect.Render({inputs.data(), outputs.data(), inBlock.frames});
    };
}

/** Writes nothing into its second output where its input is silent. */
void Silence(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        constexpr std::int32_t largestBlock = 1024;
        const float* const input = inBlock.inputs[1];
        const bool isSilent = std::all_of(
            input, input + inBlock.frames, [](float inSample) { return inSample == 0.0F; });
        float unused[largestBlock] = {};
        float* outputs[] = {inBlock.outputs[0],
                            isSilent && inBlock.frames <= largestBlock ? unused : inBlock.outputs[1]};
        ioEffect.Render({inBlock.inputs, outputs, inBlock.frames});
    };
}
} // namespace faults
