#include "Examples/broken/CPlainEffect.h"

/** Forgets its state: takes every chunk and does nothing with it. */
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
        return inOpcode == effSetChunk ? 1
                                       : CSpoiledDispatcher<CBrokenMemory>::Base(inEffect, inOpcode, inIndex,
                                                                                 inValue, inPointer, inOpt);
    }
};

BROKEN_PLUGIN(CBrokenMemory)
