#pragma once
#include "Examples/common/CVst2Effect.h"
#include "Examples/synth/CMidiQueue.h"
#include "Examples/synth/CSynthVoice.h"
#include "Examples/synth/SynthParameters.h"

#include <array>
#include <cstdint>

/**
 * A synthesizer of eight voices with three stereo ports: the sound, the oscillators before the filter, and
 * the sub-oscillator alone. It has an editor.
 *
 * All channels play the same part. Bank programs are chosen by the host, not by MIDI.
 */
class CExampleSynth final : public CVst2Effect
{
public:
    /** @param inHost hears of edits. */
    explicit CExampleSynth(audioMasterCallback inHost);

    static constexpr std::size_t kVoices = 8;

private:
    /** A value that follows its target over some milliseconds, so that a step of it is not heard. */
    struct SGlide
    {
        double mValue = 0.0;
        double mTarget = 0.0;

        void Step(double inFactor) noexcept { mValue += (mTarget - mValue) * inFactor; }
        void Jump() noexcept { mValue = mTarget; }
    };
    /** The parameters that glide; the others are taken up by the next block. */
    struct SGlides
    {
        SGlide mCutoffOctaves;
        SGlide mDamping;
        SGlide mContourOctaves;
        SGlide mShape;
        SGlide mDetuneSemitones;
        SGlide mSubLevel;
        SGlide mVolume;
    };

    void Prepare(double inSampleRate) override;
    void Reset() noexcept override;
    void Receive(const VstMidiEvent& inEvent) noexcept override;
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override;

    std::array<SGlide*, 7> AllGlides() noexcept;
    void ReadParameters() noexcept;
    void StepControls() noexcept;
    SVoiceOutput RenderSample() noexcept;
    void Handle(const SQueuedMessage& inMessage) noexcept;
    void NoteOn(std::uint8_t inChannel, std::uint8_t inNote, std::uint8_t inVelocity) noexcept;
    void NoteOff(std::uint8_t inChannel, std::uint8_t inNote) noexcept;
    void Control(std::uint8_t inController, std::uint8_t inValue) noexcept;
    void SetSustain(bool inDown) noexcept;
    void ReleaseAll() noexcept;
    void ResetControllers() noexcept;
    CSynthVoice& ChooseVoice(std::uint8_t inChannel, std::uint8_t inNote) noexcept;

    std::array<CSynthVoice, kVoices> mVoices;
    CMidiQueue mQueue;
    SVoiceControls mControls;
    SGlides mGlides;
    SGlide mBendSemitones;
    SGlide mVibratoSemitones;
    double mGlideFactor = 1.0;
    double mLfoPhase = 0.0; // 0 to 1
    double mLfoStep = 0.0;
    double mBend = 0.0;       // -1 to 1
    double mModulation = 0.0; // 0 to 1
    bool mSustainPedal = false;
    std::uint64_t mNotes = 0; // started so far
};
