#include "Examples/broken/CPlainEffect.h"

#include <cmath>

/** Outputs NaN as soon as the input is loud. */
class CBrokenNumbers final : public CPlainEffect
{
public:
    using CPlainEffect::CPlainEffect;

private:
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override
    {
        bool isLoud = false;
        for (std::int32_t frame = 0; frame < inFrames; ++frame)
        {
            isLoud = isLoud || std::abs(inInputs[0][frame]) > 0.9F;
        }
        CPlainEffect::Render(inInputs, inOutputs, inFrames);
        if (isLoud)
        {
            inOutputs[0][0] = std::sqrt(-1.0F);
        }
    }
};

BROKEN_PLUGIN(CBrokenNumbers)
