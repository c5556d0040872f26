#include "Examples/broken/CPlainEffect.h"

/** Begins afresh with its first block: what was set before, other than by a state, is lost. */
class CBrokenStart final : public CPlainEffect
{
public:
    explicit CBrokenStart(audioMasterCallback inHost) : CPlainEffect(inHost)
    {
        CSpoiledDispatcher<CBrokenStart>::Install(*Effect());
    }
    static VstIntPtr Answer(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue,
                            void* inPointer, float inOpt)
    {
        if (inOpcode == effSetChunk)
        {
            static_cast<CBrokenStart*>(static_cast<CVst2Effect*>(inEffect->object))->mHasStarted = true;
        }
        return CSpoiledDispatcher<CBrokenStart>::Base(inEffect, inOpcode, inIndex, inValue, inPointer, inOpt);
    }

private:
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override
    {
        if (!mHasStarted)
        {
            mHasStarted = true;
            Effect()->setParameter(Effect(), kGain, 0.8F);
            Effect()->setParameter(Effect(), kBalance, 0.5F);
        }
        CPlainEffect::Render(inInputs, inOutputs, inFrames);
    }

    bool mHasStarted = false;
};

BROKEN_PLUGIN(CBrokenStart)
