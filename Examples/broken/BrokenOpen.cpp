#include "Examples/broken/CPlainEffect.h"

#include <chrono>
#include <thread>

/** Hangs in open. */
class CBrokenOpen final : public CPlainEffect
{
public:
    explicit CBrokenOpen(audioMasterCallback inHost) : CPlainEffect(inHost)
    {
        CSpoiledDispatcher<CBrokenOpen>::Install(*Effect());
    }
    static VstIntPtr Answer(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue,
                            void* inPointer, float inOpt)
    {
        if (inOpcode == effOpen)
        {
            std::this_thread::sleep_for(std::chrono::hours(1)); // beyond every limit
        }
        return CSpoiledDispatcher<CBrokenOpen>::Base(inEffect, inOpcode, inIndex, inValue, inPointer, inOpt);
    }
};

BROKEN_PLUGIN(CBrokenOpen)
