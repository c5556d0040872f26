#include "Examples/broken/CPlainEffect.h"

/** Forgets its state: every chunk leaves it with zeros. */
class CBrokenMemory final : public CPlainEffect
{
public:
    explicit CBrokenMemory(audioMasterCallback inHost) : CPlainEffect(inHost)
    {
        CSpoiledDispatcher<CBrokenMemory>::Install(*Effect());
    }
    static VstIntPtr Answer(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue,
                            void* inPointer, float inOpt)
    {
        if (inOpcode != effSetChunk)
            return CSpoiledDispatcher<CBrokenMemory>::Base(inEffect, inOpcode, inIndex, inValue, inPointer,
                                                           inOpt);
        for (std::int32_t i = 0; i < inEffect->numParams; ++i)
            inEffect->setParameter(inEffect, i, 0.0F);
        return 1;
    }
};

BROKEN_PLUGIN(CBrokenMemory)
