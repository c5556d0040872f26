#include "Examples/broken/CPlainEffect.h"

#include <array>
#include <atomic>

/** Keeps the values of all instances in one place. */
class CBrokenShared final : public CPlainEffect
{
public:
    explicit CBrokenShared(audioMasterCallback inHost) : CPlainEffect(inHost, {.keepsChunk = false})
    {
        Effect()->getParameter = &GetParameter;
        sBaseSet = Effect()->setParameter;
        Effect()->setParameter = &SetParameter;
    }

private:
    static void SetParameter(AEffect* inEffect, std::int32_t inIndex, float inValue)
    {
        sBaseSet(inEffect, inIndex, inValue);
        if (inIndex >= 0 && inIndex < static_cast<std::int32_t>(kParameterCount))
        {
            sValues[static_cast<std::size_t>(inIndex)] = inValue;
        }
    }
    static float GetParameter(AEffect*, std::int32_t inIndex)
    {
        return inIndex >= 0 && inIndex < static_cast<std::int32_t>(kParameterCount)
                   ? sValues[static_cast<std::size_t>(inIndex)].load()
                   : 0.0F;
    }
    static inline AEffectSetParameterProc sBaseSet = nullptr;
    static inline std::array<std::atomic<float>, kParameterCount> sValues{0.8F, 0.5F};
};

BROKEN_PLUGIN(CBrokenShared)
