#include "Examples/broken/CPlainEffect.h"

/** Writes past its buffer: one frame more than it was asked for. */
class CBrokenBounds final : public CPlainEffect
{
public:
    using CPlainEffect::CPlainEffect;

private:
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override
    {
        CPlainEffect::Render(inInputs, inOutputs, inFrames);
        inOutputs[1][inFrames] = 0.0F;
    }
};

BROKEN_PLUGIN(CBrokenBounds)
