#include "Examples/broken/CPlainEffect.h"

#include <cstdlib>

/** Crashes in set-chunk when the chunk is not one of its own. */
class CBrokenChunk final : public CPlainEffect
{
public:
    explicit CBrokenChunk(audioMasterCallback inHost) : CPlainEffect(inHost)
    {
        CSpoiledDispatcher<CBrokenChunk>::Install(*Effect());
    }
    static VstIntPtr Answer(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue,
                            void* inPointer, float inOpt)
    {
        const VstIntPtr result =
            CSpoiledDispatcher<CBrokenChunk>::Base(inEffect, inOpcode, inIndex, inValue, inPointer, inOpt);
        if (inOpcode == effSetChunk && result == 0)
        {
            std::abort();
        }
        return result;
    }
};

BROKEN_PLUGIN(CBrokenChunk)
