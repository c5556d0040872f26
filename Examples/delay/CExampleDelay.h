#pragma once
#include "Examples/common/CVst2Effect.h"
#include "Examples/delay/CDelayLine.h"

#include <array>
#include <cstddef>
#include <cstdint>

/**
 * A stereo delay with feedback that goes duller with each repeat, and a constant latency of 64 samples.
 *
 * The latency lies in front of everything, the dry path too, so that a host's compensation can be tried.
 */
class CExampleDelay final : public CVst2Effect
{
public:
    static constexpr std::int32_t kLatency = 64; // samples

    CExampleDelay();

private:
    static constexpr std::size_t kChannels = 2;

    /** One side: what delays it all, and the echoes. */
    struct SSide
    {
        CDelayLine mLatency;
        CDelayLine mEchoes;
        float mDulled = 0.0F; // the low-pass filter's memory
    };
    struct SSettings
    {
        double mTime = 0.0; // samples
        float mFeedback = 0.0F;
        float mTone = 0.0F; // of the low-pass filter, per sample
        float mMix = 0.0F;
    };

    void Prepare(double inSampleRate) override;
    void Reset() noexcept override;
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override;

    SSettings ReadSettings() const noexcept;
    float RenderSample(SSide& ioSide, float inSample) const noexcept;

    double mSampleRate = 0.0;  // Hz
    double mGlideFactor = 1.0; // part of the way to the parameters' values that one sample goes
    SSettings mSettings;
    std::array<SSide, kChannels> mSides;
};
