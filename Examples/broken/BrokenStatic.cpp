#include "Examples/broken/CPlainEffect.h"

#include <atomic>
#include <cstdlib>

/** Tears down with any instance what all of them need to render. */
class CBrokenStatic final : public CPlainEffect
{
public:
    explicit CBrokenStatic(audioMasterCallback inHost) : CPlainEffect(inHost) { sIsReady = true; }
    ~CBrokenStatic() override { sIsReady = false; }

private:
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override
    {
        if (!sIsReady)
        {
            std::abort();
        }
        CPlainEffect::Render(inInputs, inOutputs, inFrames);
    }
    static inline std::atomic<bool> sIsReady = false;
};

BROKEN_PLUGIN(CBrokenStatic)
