#pragma once
#include <cstddef>
#include <cstdint>

/** What `AaxAdapter_AlgorithmProcessFunction` needs for one instance; every pointer is the host's. */
struct SAaxAdapter_Alg_Context
{
    std::int32_t* mBypassP;     // non-zero: the input passes unchanged
    float* mGainP;              // linear
    float** mInputPP;           // channel 0 is read
    float** mOutputPP;          // channel 0 is written
    std::int32_t* mBufferSizeP; // frames
    float** mMetersPP;          // the first points at two linear peaks: input, output
};
static_assert(sizeof(SAaxAdapter_Alg_Context) == 6 * sizeof(void*));

/**
 * A mono gain with peak meters. Peaks only grow: whoever shows them resets them. Render thread.
 *
 * What no module calls: a description registers the render callback of its product (`ProductRenderCallback`).
 */
void AaxAdapter_AlgorithmProcessFunction(SAaxAdapter_Alg_Context* const inBegin[],
                                         const void* inEnd) noexcept;
