#pragma once
#include <cstdint>

/** Times and level of an envelope as steps and factors per sample. */
struct SEnvelopeShape
{
    double mAttackStep = 1.0;
    double mDecayFactor = 1.0; // part of the way to the sustain level that one sample goes
    double mSustain = 1.0;     // 0 to 1
    double mReleaseFactor = 1.0;
};

/**
 * An envelope of the usual four phases: a straight attack, then curves that come within a hundredth of their
 * end in the time set.
 *
 * A start while it sounds goes on from the level it has, so that neither a repeated nor a stolen note clicks.
 */
class CEnvelope
{
public:
    /** @return the share of the way that one sample goes, for a curve of that duration. */
    static double FactorFor(double inSeconds, double inSampleRate) noexcept;

    void Start() noexcept { mPhase = EPhase::kAttack; }
    void Release() noexcept;
    void Stop() noexcept;
    bool IsActive() const noexcept { return mPhase != EPhase::kIdle; }
    bool IsReleased() const noexcept { return mPhase == EPhase::kRelease; }
    double Level() const noexcept { return mLevel; }
    /** @return the level at the next sample, 0 to 1. */
    double Next(const SEnvelopeShape& inShape) noexcept;

private:
    enum class EPhase : std::uint8_t
    {
        kIdle,
        kAttack,
        kDecay,
        kRelease
    };

    EPhase mPhase = EPhase::kIdle;
    double mLevel = 0.0;
};
