#include "Examples/broken/CPlainEffect.h"

/** Changes a parameter by itself as soon as it is loaded and renders. */
class CBrokenRest final : public CPlainEffect
{
public:
    using CPlainEffect::CPlainEffect;

private:
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override
    {
        if (!mHasMoved)
        {
            mHasMoved = true;
            Edited().PerformEdit(kGain, 0.3F);
        }
        CPlainEffect::Render(inInputs, inOutputs, inFrames);
    }

    bool mHasMoved = false;
};

BROKEN_PLUGIN(CBrokenRest)
