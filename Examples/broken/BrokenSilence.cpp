#include "Examples/broken/CPlainEffect.h"

#include <algorithm>

/** Writes nothing into its second output where its input is silent. */
class CBrokenSilence final : public CPlainEffect
{
public:
    using CPlainEffect::CPlainEffect;

private:
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override
    {
        const float* const input = inInputs[1];
        const bool isSilent =
            std::all_of(input, input + inFrames, [](float sample) { return sample == 0.0F; });
        float unused[kLargestBlock] = {};
        float* const outputs[] = {inOutputs[0],
                                  isSilent && inFrames <= kLargestBlock ? unused : inOutputs[1]};
        CPlainEffect::Render(inInputs, outputs, inFrames);
    }

    static constexpr std::int32_t kLargestBlock = 1024;
};

BROKEN_PLUGIN(CBrokenSilence)
