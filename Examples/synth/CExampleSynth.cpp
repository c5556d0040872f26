#include "Examples/synth/CExampleSynth.h"

#include "Examples/synth/editor/CSynthEditor.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

namespace
{
constexpr double kDefaultSampleRate = 44100.0; // Hz
constexpr double kGlideSeconds = 0.03;         // until a value is within a hundredth of its target
constexpr double kVelocityGlideSeconds = 0.01;
constexpr double kLfoHertz = 5.5;
constexpr double kLoudestUnbent = 0.75; // above it the output bends towards full scale and never gets there

constexpr SStereoPort kOutputs[] = {{"Main", "Main"}, {"Dry", "Dry"}, {"Sub", "Sub"}};

SEffectInfo SynthInfo()
{
    return {.mUniqueId = 0x45785379, // "ExSy"
            .mVersion = 1000,
            .mName = "Example Synth",
            .mVendor = "Example Audio",
            .mParameters = SynthParameters(),
            .mPrograms = SynthPrograms(),
            .mInputs = {},
            .mOutputs = kOutputs,
            .mLatency = 0,
            .mIsSynth = true,
            .mKeepsChunk = true};
}

float Bent(double inSample) noexcept
{
    const double size = std::abs(inSample);
    if (size <= kLoudestUnbent)
        return static_cast<float>(inSample);
    constexpr double room = 1.0 - kLoudestUnbent;
    return static_cast<float>(
        std::copysign(kLoudestUnbent + room * std::tanh((size - kLoudestUnbent) / room), inSample));
}

// Upper halves of status bytes and controller numbers.
constexpr std::uint8_t kNoteOff = 0x80;
constexpr std::uint8_t kNoteOn = 0x90;
constexpr std::uint8_t kControlChange = 0xB0;
constexpr std::uint8_t kPitchBend = 0xE0;
constexpr std::uint8_t kModulationWheel = 1;
constexpr std::uint8_t kSustainPedal = 64;
constexpr std::uint8_t kAllSoundOff = 120;
constexpr std::uint8_t kResetControllers = 121;
constexpr std::uint8_t kAllNotesOff = 123; // and the mode messages above it
} // namespace

EXAMPLE_EXPORT AEffect* EXAMPLE_ENTRY(audioMasterCallback inHost);
EXAMPLE_EXPORT AEffect* EXAMPLE_ENTRY(audioMasterCallback inHost)
{
    if (inHost == nullptr)
        return nullptr;
    try
    {
        return (new CExampleSynth(inHost))->Effect(); // owned by the host, which ends it with effClose
    }
    catch (...)
    {
        return nullptr;
    }
}

CExampleSynth::CExampleSynth(audioMasterCallback inHost) : CVst2Effect(SynthInfo(), inHost)
{
    SetEditor(std::make_unique<CSynthEditor>(Edited()));
    Prepare(kDefaultSampleRate);
    Reset();
}

void CExampleSynth::Prepare(double inSampleRate)
{
    mControls.mSampleRate = inSampleRate;
    mControls.mGainGlide = CEnvelope::FactorFor(kVelocityGlideSeconds, inSampleRate);
    mGlideFactor = CEnvelope::FactorFor(kGlideSeconds, inSampleRate);
    mLfoStep = kLfoHertz / inSampleRate;
}

void CExampleSynth::Reset() noexcept
{
    for (CSynthVoice& voice : mVoices)
        voice.Stop();
    mQueue.Clear();
    ResetControllers();
    mLfoPhase = 0.0;
    mNotes = 0;
    ReadParameters();
    for (SGlide* const glide : AllGlides())
        glide->Jump();
    mBendSemitones.Jump();
    mVibratoSemitones.Jump();
}

void CExampleSynth::Receive(const VstMidiEvent& inEvent) noexcept
{
    const auto byte = [&](int inIndex) { return static_cast<std::uint8_t>(inEvent.midiData[inIndex]); };
    mQueue.Push({inEvent.deltaFrames, {byte(0), byte(1), byte(2)}});
}

void CExampleSynth::Render(float* const* /*inInputs*/, float* const* inOutputs,
                           std::int32_t inFrames) noexcept
{
    ReadParameters();
    for (std::int32_t frame = 0; frame < inFrames; ++frame)
    {
        while (const SQueuedMessage* const message = mQueue.PopDue(frame))
            Handle(*message);
        const SVoiceOutput sample = RenderSample();
        const double samples[] = {sample.mMainLeft, sample.mMainRight, sample.mDryLeft,
                                  sample.mDryRight, sample.mSub,       sample.mSub};
        for (std::size_t channel = 0; channel < std::size(samples); ++channel)
            inOutputs[channel][frame] = Bent(samples[channel] * mGlides.mVolume.mValue);
    }
    mQueue.Advance(inFrames);
}

std::array<CExampleSynth::SGlide*, 7> CExampleSynth::AllGlides() noexcept
{
    return {&mGlides.mCutoffOctaves,   &mGlides.mDamping,  &mGlides.mContourOctaves, &mGlides.mShape,
            &mGlides.mDetuneSemitones, &mGlides.mSubLevel, &mGlides.mVolume};
}

void CExampleSynth::ReadParameters() noexcept
{
    constexpr double percent = 0.01;
    constexpr double milli = 0.001;
    mGlides.mCutoffOctaves.mTarget = std::log2(Plain(kCutoff));
    mGlides.mDamping.mTarget = 2.0 - 1.8 * percent * Plain(kEmphasis);
    mGlides.mContourOctaves.mTarget = Plain(kContour);
    mGlides.mShape.mTarget = percent * Plain(kShape);
    mGlides.mDetuneSemitones.mTarget = percent * Plain(kDetune);
    mGlides.mSubLevel.mTarget = percent * Plain(kSubLevel);
    mGlides.mVolume.mTarget = std::pow(10.0, Plain(kVolume) / 20.0);
    mBendSemitones.mTarget = mBend * Plain(kBendRange);
    mVibratoSemitones.mTarget = mModulation * percent * Plain(kVibrato);

    SEnvelopeShape& shape = mControls.mEnvelope;
    shape.mAttackStep = 1.0 / std::max(1.0, milli * Plain(kAttack) * mControls.mSampleRate);
    shape.mDecayFactor = CEnvelope::FactorFor(milli * Plain(kDecay), mControls.mSampleRate);
    shape.mSustain = percent * Plain(kSustain);
    shape.mReleaseFactor = CEnvelope::FactorFor(milli * Plain(kRelease), mControls.mSampleRate);
}

void CExampleSynth::StepControls() noexcept
{
    for (SGlide* const glide : AllGlides())
        glide->Step(mGlideFactor);
    mBendSemitones.Step(mGlideFactor);
    mVibratoSemitones.Step(mGlideFactor);
    mLfoPhase += mLfoStep;
    mLfoPhase -= mLfoPhase >= 1.0 ? 1.0 : 0.0;

    mControls.mCutoffOctaves = mGlides.mCutoffOctaves.mValue;
    mControls.mDamping = mGlides.mDamping.mValue;
    mControls.mContourOctaves = mGlides.mContourOctaves.mValue;
    mControls.mShape = mGlides.mShape.mValue;
    mControls.mDetuneSemitones = mGlides.mDetuneSemitones.mValue;
    mControls.mSubLevel = mGlides.mSubLevel.mValue;
    mControls.mTransposition =
        mBendSemitones.mValue + mVibratoSemitones.mValue * std::sin(2.0 * std::numbers::pi * mLfoPhase);
}

SVoiceOutput CExampleSynth::RenderSample() noexcept
{
    StepControls();
    SVoiceOutput sum;
    for (CSynthVoice& voice : mVoices)
        if (voice.IsActive())
            voice.Render(mControls, sum);
    return sum;
}

void CExampleSynth::Handle(const SQueuedMessage& inMessage) noexcept
{
    const auto channel = static_cast<std::uint8_t>(inMessage.mBytes[0] & 0x0F);
    const auto first = static_cast<std::uint8_t>(inMessage.mBytes[1] & 0x7F);
    const auto second = static_cast<std::uint8_t>(inMessage.mBytes[2] & 0x7F);
    switch (inMessage.mBytes[0] & 0xF0)
    {
    case kNoteOn:
        if (second != 0)
        {
            NoteOn(channel, first, second);
            break;
        }
        [[fallthrough]]; // a note of velocity 0 is the end of that note
    case kNoteOff: NoteOff(channel, first); break;
    case kControlChange: Control(first, second); break;
    case kPitchBend:
        mBend = (first + 128 * second - 8192) / 8192.0;
        mBendSemitones.mTarget = mBend * Plain(kBendRange);
        break;
    default: break;
    }
}

void CExampleSynth::NoteOn(std::uint8_t inChannel, std::uint8_t inNote, std::uint8_t inVelocity) noexcept
{
    ChooseVoice(inChannel, inNote).Start(inChannel, inNote, inVelocity, ++mNotes);
}

void CExampleSynth::NoteOff(std::uint8_t inChannel, std::uint8_t inNote) noexcept
{
    for (CSynthVoice& voice : mVoices)
        if (voice.IsKeyDown() && voice.Plays(inChannel, inNote))
            voice.KeyUp(mSustainPedal);
}

void CExampleSynth::Control(std::uint8_t inController, std::uint8_t inValue) noexcept
{
    switch (inController)
    {
    case kModulationWheel:
        mModulation = inValue / 127.0;
        mVibratoSemitones.mTarget = mModulation * 0.01 * Plain(kVibrato);
        break;
    case kSustainPedal: SetSustain(inValue >= 64); break;
    case kAllSoundOff: ReleaseAll(); break;
    case kResetControllers: ResetControllers(); break;
    default:
        if (inController >= kAllNotesOff)
            ReleaseAll();
        break;
    }
}

void CExampleSynth::SetSustain(bool inDown) noexcept
{
    mSustainPedal = inDown;
    for (CSynthVoice& voice : mVoices)
        if (!inDown && voice.IsSustained())
            voice.Release();
}

void CExampleSynth::ReleaseAll() noexcept
{
    for (CSynthVoice& voice : mVoices)
        voice.Release();
}

void CExampleSynth::ResetControllers() noexcept
{
    mBend = 0.0;
    mModulation = 0.0;
    mBendSemitones.mTarget = 0.0;
    mVibratoSemitones.mTarget = 0.0;
    SetSustain(false);
}

/** The voice that plays this very note, else a free one, else the quietest that fades, else the oldest. */
CSynthVoice& CExampleSynth::ChooseVoice(std::uint8_t inChannel, std::uint8_t inNote) noexcept
{
    const auto same = std::ranges::find_if(mVoices, [&](const CSynthVoice& inVoice)
                                           { return inVoice.Plays(inChannel, inNote); });
    if (same != mVoices.end())
        return *same;
    const auto rank = [](const CSynthVoice& inVoice) {
        return !inVoice.IsActive() ? 0 : inVoice.IsReleased() ? 1 : 2;
    };
    return *std::ranges::min_element(mVoices,
                                     [&](const CSynthVoice& inLeft, const CSynthVoice& inRight)
                                     {
                                         if (rank(inLeft) != rank(inRight))
                                         {
                                             return rank(inLeft) < rank(inRight);
                                         }
                                         return rank(inLeft) == 1 ? inLeft.Level() < inRight.Level()
                                                                  : inLeft.Age() < inRight.Age();
                                     });
}
