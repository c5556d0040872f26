#include "Examples/broken/CPlainEffect.h"

#include <cstdlib>

/** Crashes where the tempo is above any that its maker thought of. */
class CBrokenTempo final : public CPlainEffect
{
public:
    using CPlainEffect::CPlainEffect;

private:
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override
    {
        const VstIntPtr time = Host()(Effect(), audioMasterGetTime, 0, 0, nullptr, 0.0F);
        if (time != 0 && reinterpret_cast<const VstTimeInfo*>(time)->tempo > 500.0)
        {
            std::abort();
        }
        CPlainEffect::Render(inInputs, inOutputs, inFrames);
    }
};

BROKEN_PLUGIN(CBrokenTempo)
