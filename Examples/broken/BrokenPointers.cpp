#include "Examples/broken/CPlainEffect.h"

#include <array>

/** Keeps the buffers of its first block and looks at no others. */
class CBrokenPointers final : public CPlainEffect
{
public:
    using CPlainEffect::CPlainEffect;

private:
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override
    {
        if (mInputs[0] == nullptr)
        {
            mInputs = {inInputs[0], inInputs[1]};
            mOutputs = {inOutputs[0], inOutputs[1]};
        }
        CPlainEffect::Render(mInputs.data(), mOutputs.data(), inFrames);
    }

    std::array<float*, 2> mInputs{};
    std::array<float*, 2> mOutputs{};
};

BROKEN_PLUGIN(CBrokenPointers)
