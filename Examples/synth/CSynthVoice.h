#pragma once
#include "Examples/synth/CEnvelope.h"

#include <cstdint>

/** What all voices share at one sample; times are in samples, levels linear. */
struct SVoiceControls
{
    double mSampleRate = 44100.0; // Hz
    SEnvelopeShape mEnvelope;
    double mTransposition = 0.0;  // semitones: pitch bend and vibrato
    double mCutoffOctaves = 10.0; // above 1 Hz
    double mDamping = 2.0;        // of the filter: 2 is no emphasis, 0 would be an oscillation
    double mContourOctaves = 0.0;
    double mShape = 0.0;           // 0 saw, 1 square
    double mDetuneSemitones = 0.0; // between the two oscillators
    double mSubLevel = 0.0;
    double mGainGlide = 1.0; // part of the way to its velocity's gain that one sample goes
};

/** One sample of a voice: filtered, unfiltered, and the sub-oscillator alone. */
struct SVoiceOutput
{
    double mMainLeft = 0.0;
    double mMainRight = 0.0;
    double mDryLeft = 0.0;
    double mDryRight = 0.0;
    double mSub = 0.0;
};

/**
 * One voice: two oscillators between saw and square and a sine an octave below, an envelope, and a low-pass
 * filter for each side that the envelope opens.
 *
 * Render thread only. What it gives depends on its notes and controls, never on how blocks are cut.
 */
class CSynthVoice
{
public:
    /** Starts a note; a voice that sounds goes on from where it is, without a click.
     * @param inAge grows with every note started, so that the oldest voice is known. */
    void Start(std::uint8_t inChannel, std::uint8_t inNote, std::uint8_t inVelocity,
               std::uint64_t inAge) noexcept;
    /** The key is up. @param inSustained keeps the note sounding until Release. */
    void KeyUp(bool inSustained) noexcept;
    void Release() noexcept;
    /** Silent at once. */
    void Stop() noexcept;
    /** Adds the next sample of an active voice. */
    void Render(const SVoiceControls& inControls, SVoiceOutput& ioSum) noexcept;

    bool IsActive() const noexcept { return mEnvelope.IsActive(); }
    bool IsReleased() const noexcept { return mEnvelope.IsReleased(); }
    bool IsKeyDown() const noexcept { return mKeyDown; }
    bool IsSustained() const noexcept { return mSustained; }
    bool Plays(std::uint8_t inChannel, std::uint8_t inNote) const noexcept;
    std::uint64_t Age() const noexcept { return mAge; }
    double Level() const noexcept { return mEnvelope.Level(); }

private:
    /** A saw and a square of the same phase, their edges rounded so that they alias little. */
    class COscillator
    {
    public:
        void Restart(double inPhase) noexcept { mPhase = inPhase; }
        /** @param inStep periods per sample, below 0.5. @return -1 to 1. */
        double Next(double inStep, double inShape) noexcept;

    private:
        double mPhase = 0.0; // 0 to 1
    };

    /** State-variable low-pass filter in the form that stays stable while its cutoff moves. */
    class CLowPass
    {
    public:
        void Clear() noexcept;
        double Next(double inSample, double inG, double inDamping) noexcept;

    private:
        double mFirst = 0.0;
        double mSecond = 0.0;
    };

    void UpdateControls(const SVoiceControls& inControls) noexcept;

    CEnvelope mEnvelope;
    COscillator mLeftOscillator;
    COscillator mRightOscillator;
    CLowPass mLeftFilter;
    CLowPass mRightFilter;
    double mSubPhase = 0.0;
    std::uint8_t mChannel = 0;
    std::uint8_t mNote = 0;
    bool mKeyDown = false;
    bool mSustained = false;
    std::uint64_t mAge = 0;
    double mGain = 0.0;
    double mTargetGain = 0.0;
    // Of the controls that are worked out every few samples only.
    int mSamplesToUpdate = 0;
    bool mFresh = true;
    double mLeftStep = 0.0;
    double mRightStep = 0.0;
    double mSubStep = 0.0;
    double mFilterG = 0.0;
    double mFilterGStep = 0.0;
};
