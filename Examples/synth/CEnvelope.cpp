#include "Examples/synth/CEnvelope.h"

#include <cmath>

namespace
{
constexpr double kSilence = 1e-5; // -100 dB: ending there is not heard
constexpr double kLogOfHundredth = -4.605170185988091;
} // namespace

double CEnvelope::FactorFor(double inSeconds, double inSampleRate) noexcept
{
    return 1.0 - std::exp(kLogOfHundredth / (inSeconds * inSampleRate));
}

void CEnvelope::Release() noexcept
{
    if (IsActive())
        mPhase = EPhase::kRelease;
}

void CEnvelope::Stop() noexcept
{
    mPhase = EPhase::kIdle;
    mLevel = 0.0;
}

double CEnvelope::Next(const SEnvelopeShape& inShape) noexcept
{
    switch (mPhase)
    {
    case EPhase::kIdle: break;
    case EPhase::kAttack:
        mLevel += inShape.mAttackStep;
        if (mLevel >= 1.0)
        {
            mLevel = 1.0;
            mPhase = EPhase::kDecay;
        }
        break;
    case EPhase::kDecay: mLevel += (inShape.mSustain - mLevel) * inShape.mDecayFactor; break;
    case EPhase::kRelease:
        mLevel -= mLevel * inShape.mReleaseFactor;
        if (mLevel < kSilence)
            Stop();
        break;
    }
    return mLevel;
}
