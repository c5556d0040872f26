#include "Examples/delay/CExampleDelay.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace
{
enum EDelayParameter : std::size_t
{
    kTime,
    kFeedback,
    kTone,
    kMix,
    kParameterCount
};
constexpr double kDefaultSampleRate = 44100.0; // Hz
constexpr double kLongestSeconds = 1.0;
constexpr double kGlideSeconds = 0.05;
constexpr float kInaudible = 1e-15F; // smaller numbers would only slow the machine down

constexpr std::array<SParameterInfo, kParameterCount> kParameters{{
    {"Time", "ms", 1.0, 1000.0 * kLongestSeconds, 0},
    {"Feedback", "%", 0.0, 95.0, 0},
    {"Tone", "Hz", 500.0, 16000.0, 0, EParameterScale::kExponential},
    {"Mix", "%", 0.0, 100.0, 0},
}};
constexpr std::array<double, kParameterCount> kInitial = {350.0, 40.0, 5000.0, 35.0};
constexpr SFactoryProgram kPrograms[] = {{"Default", kInitial}};
constexpr SStereoPort kInputs[] = {{"Input", "In"}};
constexpr SStereoPort kOutputs[] = {{"Output", "Out"}};

SEffectInfo DelayInfo()
{
    return {.mUniqueId = 0x4578446C, // "ExDl"
            .mVersion = 1000,
            .mName = "Example Delay",
            .mVendor = "Example Audio",
            .mParameters = kParameters,
            .mPrograms = kPrograms,
            .mInputs = kInputs,
            .mOutputs = kOutputs,
            .mLatency = CExampleDelay::kLatency,
            .mIsSynth = false,
            .mKeepsChunk = false};
}

/** What may circulate: neither broken numbers, which would never leave, nor the tiniest ones. */
float Circulating(float inSample) noexcept
{
    return std::isfinite(inSample) && std::abs(inSample) > kInaudible ? inSample : 0.0F;
}

template <typename Number>
void Approach(Number& ioValue, Number inTarget, double inFactor) noexcept
{
    ioValue += (inTarget - ioValue) * static_cast<Number>(inFactor);
}
} // namespace

EXAMPLE_EXPORT AEffect* EXAMPLE_ENTRY(audioMasterCallback inHost);
EXAMPLE_EXPORT AEffect* EXAMPLE_ENTRY(audioMasterCallback inHost)
{
    if (inHost == nullptr)
        return nullptr;
    try
    {
        return (new CExampleDelay)->Effect(); // owned by the host, which ends it with effClose
    }
    catch (...)
    {
        return nullptr;
    }
}

CExampleDelay::CExampleDelay() : CVst2Effect(DelayInfo())
{
    Prepare(kDefaultSampleRate);
    Reset();
}

void CExampleDelay::Prepare(double inSampleRate)
{
    for (SSide& side : mSides)
    {
        side.mLatency.Resize(kLatency);
        side.mEchoes.Resize(static_cast<std::size_t>(std::ceil(kLongestSeconds * inSampleRate)));
    }
    mSampleRate = inSampleRate;
    mGlideFactor = 1.0 - std::exp(-4.6 / (kGlideSeconds * inSampleRate));
    mSettings = ReadSettings();
}

void CExampleDelay::Reset() noexcept
{
    for (SSide& side : mSides)
    {
        side.mLatency.Clear();
        side.mEchoes.Clear();
        side.mDulled = 0.0F;
    }
    mSettings = ReadSettings();
}

CExampleDelay::SSettings CExampleDelay::ReadSettings() const noexcept
{
    return {.mTime = std::round(0.001 * Plain(kTime) * mSampleRate),
            .mFeedback = static_cast<float>(0.01 * Plain(kFeedback)),
            .mTone = static_cast<float>(1.0 - std::exp(-2.0 * std::numbers::pi * Plain(kTone) / mSampleRate)),
            .mMix = static_cast<float>(0.01 * Plain(kMix))};
}

void CExampleDelay::Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept
{
    const SSettings target = ReadSettings();
    for (std::int32_t frame = 0; frame < inFrames; ++frame)
    {
        Approach(mSettings.mTime, target.mTime, mGlideFactor);
        Approach(mSettings.mFeedback, target.mFeedback, mGlideFactor);
        Approach(mSettings.mTone, target.mTone, mGlideFactor);
        Approach(mSettings.mMix, target.mMix, mGlideFactor);
        // Both are read before either is written: the buffers may be the same ones.
        const float input[kChannels] = {inInputs[0][frame], inInputs[1][frame]};
        for (std::size_t channel = 0; channel < kChannels; ++channel)
            inOutputs[channel][frame] = RenderSample(mSides[channel], input[channel]);
    }
}

float CExampleDelay::RenderSample(SSide& ioSide, float inSample) const noexcept
{
    ioSide.mLatency.Push(inSample);
    const float dry = ioSide.mLatency.Read(kLatency);
    // The echo line's newest sample is the one before this: so one sample of the time has gone by already.
    const float echo = ioSide.mEchoes.Read(std::max(mSettings.mTime - 1.0, 0.0));
    ioSide.mDulled = Circulating(ioSide.mDulled + mSettings.mTone * (echo - ioSide.mDulled));
    ioSide.mEchoes.Push(Circulating(dry + mSettings.mFeedback * ioSide.mDulled));
    return dry + mSettings.mMix * (echo - dry);
}
