#include "Examples/broken/CPlainEffect.h"

#include <algorithm>
#include <vector>

/** Allocates in each block that it renders. */
class CBrokenHeap final : public CPlainEffect
{
public:
    using CPlainEffect::CPlainEffect;

private:
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override
    {
        CPlainEffect::Render(inInputs, inOutputs, inFrames);
        const std::vector<float> copy(inOutputs[0], inOutputs[0] + inFrames);
        std::ranges::copy(copy, inOutputs[0]);
    }
};

BROKEN_PLUGIN(CBrokenHeap)
