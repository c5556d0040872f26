#include "Source/AaxAdapter_Alg.h"

#include <cmath>

namespace
{
void Process(const SAaxAdapter_Alg_Context& inContext) noexcept
{
    const std::int32_t frames = *inContext.mBufferSizeP;
    if (frames <= 0)
        return;
    const float gain = *inContext.mBypassP != 0 ? 1.0F : *inContext.mGainP;
    const float* const in = inContext.mInputPP[0];
    float* const out = inContext.mOutputPP[0];
    float* const peaks = inContext.mMetersPP[0];
    for (std::int32_t i = 0; i < frames; ++i)
    {
        const float input = in[i]; // read first: the host may hand the same buffer for both
        out[i] = input * gain;
        peaks[0] = std::fmax(peaks[0], std::fabs(input));
        peaks[1] = std::fmax(peaks[1], std::fabs(out[i]));
    }
}
} // namespace

void AaxAdapter_AlgorithmProcessFunction(SAaxAdapter_Alg_Context* const inBegin[], const void* inEnd) noexcept
{
    for (SAaxAdapter_Alg_Context* const* context = inBegin; context < inEnd; ++context)
        Process(**context);
}
