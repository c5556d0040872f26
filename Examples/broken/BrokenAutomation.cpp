#include "Examples/broken/CPlainEffect.h"

#include <cstdlib>

/** Crashes where a parameter moves more often in a tenth of a second than its list of movements has room for.
 */
class CBrokenAutomation final : public CPlainEffect
{
public:
    using CPlainEffect::CPlainEffect;

private:
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override
    {
        constexpr std::int32_t listFrames = 4800;
        constexpr int room = 50;
        const double gain = Plain(kGain);
        mMovements += gain != mGain ? 1 : 0;
        mGain = gain;
        mFrames += inFrames;
        if (mFrames >= listFrames)
        {
            mFrames = 0;
            mMovements = 0;
        }
        if (mMovements > room)
        {
            std::abort();
        }
        CPlainEffect::Render(inInputs, inOutputs, inFrames);
    }

    double mGain = 0.0; // of the last block
    std::int32_t mFrames = 0;
    int mMovements = 0;
};

BROKEN_PLUGIN(CBrokenAutomation)
