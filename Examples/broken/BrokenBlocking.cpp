#include "Examples/broken/CPlainEffect.h"

#include <chrono>
#include <mutex>
#include <thread>

/** Blocks in processReplacing: takes a lock and sleeps. */
class CBrokenBlocking final : public CPlainEffect
{
public:
    using CPlainEffect::CPlainEffect;

private:
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override
    {
        const std::lock_guard lock(mMutex);
        std::this_thread::sleep_for(std::chrono::microseconds(1));
        CPlainEffect::Render(inInputs, inOutputs, inFrames);
    }

    std::mutex mMutex;
};

BROKEN_PLUGIN(CBrokenBlocking)
