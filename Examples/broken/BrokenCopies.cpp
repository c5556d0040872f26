#include "Examples/broken/CPlainEffect.h"

#include <atomic>

/** Gives the gain of a state that any instance loads to all of them, each in its next block. */
class CBrokenCopies final : public CPlainEffect
{
public:
    explicit CBrokenCopies(audioMasterCallback inHost) : CPlainEffect(inHost)
    {
        CSpoiledDispatcher<CBrokenCopies>::Install(*Effect());
    }
    static VstIntPtr Answer(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue,
                            void* inPointer, float inOpt)
    {
        const VstIntPtr result =
            CSpoiledDispatcher<CBrokenCopies>::Base(inEffect, inOpcode, inIndex, inValue, inPointer, inOpt);
        if (inOpcode == effSetChunk)
        {
            auto& self = *static_cast<CBrokenCopies*>(static_cast<CVst2Effect*>(inEffect->object));
            sGain = inEffect->getParameter(inEffect, kGain);
            self.mLoad = ++sLoad;
        }
        return result;
    }

private:
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override
    {
        if (const int load = sLoad; load != mLoad)
        {
            mLoad = load;
            Effect()->setParameter(Effect(), kGain, sGain);
        }
        CPlainEffect::Render(inInputs, inOutputs, inFrames);
    }

    std::atomic<int> mLoad = sLoad.load(); // the last one that it knows of
    static inline std::atomic<int> sLoad = 0;
    static inline std::atomic<float> sGain = 0.0F;
};

BROKEN_PLUGIN(CBrokenCopies)
