#include "Examples/broken/CPlainEffect.h"

#include <atomic>

/** Reports a value for ever: once a parameter was set, it tells its gain in each block. */
class CBrokenReports final : public CPlainEffect
{
public:
    explicit CBrokenReports(audioMasterCallback inHost) : CPlainEffect(inHost)
    {
        sBaseSet = Effect()->setParameter;
        Effect()->setParameter = &SetParameter;
    }

private:
    static void SetParameter(AEffect* inEffect, std::int32_t inIndex, float inValue)
    {
        sBaseSet(inEffect, inIndex, inValue);
        static_cast<CBrokenReports*>(static_cast<CVst2Effect*>(inEffect->object))->mWasSet = true;
    }
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override
    {
        if (mWasSet)
        {
            Edited().PerformEdit(kGain, Effect()->getParameter(Effect(), kGain));
        }
        CPlainEffect::Render(inInputs, inOutputs, inFrames);
    }

    std::atomic<bool> mWasSet = false;
    static inline AEffectSetParameterProc sBaseSet = nullptr;
};

BROKEN_PLUGIN(CBrokenReports)
