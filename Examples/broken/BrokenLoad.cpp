#include "Examples/broken/CPlainEffect.h"

/** Loads its state in two steps, and moves a value in the second: when it is next asked for its state. */
class CBrokenLoad final : public CPlainEffect
{
public:
    explicit CBrokenLoad(audioMasterCallback inHost) : CPlainEffect(inHost)
    {
        CSpoiledDispatcher<CBrokenLoad>::Install(*Effect());
    }
    static VstIntPtr Answer(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue,
                            void* inPointer, float inOpt)
    {
        auto& self = *static_cast<CBrokenLoad*>(static_cast<CVst2Effect*>(inEffect->object));
        if (inOpcode == effSetChunk)
        {
            self.mIsHalfLoaded = true;
        }
        else if (inOpcode == effGetChunk && self.mIsHalfLoaded)
        {
            self.mIsHalfLoaded = false;
            inEffect->setParameter(inEffect, kGain, 1.0F - inEffect->getParameter(inEffect, kGain));
        }
        return CSpoiledDispatcher<CBrokenLoad>::Base(inEffect, inOpcode, inIndex, inValue, inPointer, inOpt);
    }

private:
    bool mIsHalfLoaded = false;
};

BROKEN_PLUGIN(CBrokenLoad)
