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
    return {.uniqueId = 0x45785379, // "ExSy"
            .version = 1000,
            .name = "Example Synth",
            .vendor = "Example Audio",
            .parameters = SynthParameters(),
            .programs = SynthPrograms(),
            .inputs = {},
            .outputs = kOutputs,
            .latency = 0,
            .isSynth = true,
            .keepsChunk = true};
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
    mControls.sampleRate = inSampleRate;
    mControls.gainGlide = CEnvelope::FactorFor(kVelocityGlideSeconds, inSampleRate);
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
        const double samples[] = {sample.mainLeft, sample.mainRight, sample.dryLeft,
                                  sample.dryRight, sample.sub,       sample.sub};
        for (std::size_t channel = 0; channel < std::size(samples); ++channel)
            inOutputs[channel][frame] = Bent(samples[channel] * mGlides.volume.value);
    }
    mQueue.Advance(inFrames);
}

std::array<CExampleSynth::SGlide*, 7> CExampleSynth::AllGlides() noexcept
{
    return {&mGlides.cutoffOctaves,   &mGlides.damping,  &mGlides.contourOctaves, &mGlides.shape,
            &mGlides.detuneSemitones, &mGlides.subLevel, &mGlides.volume};
}

void CExampleSynth::ReadParameters() noexcept
{
    constexpr double percent = 0.01;
    constexpr double milli = 0.001;
    mGlides.cutoffOctaves.target = std::log2(Plain(kCutoff));
    mGlides.damping.target = 2.0 - 1.8 * percent * Plain(kEmphasis);
    mGlides.contourOctaves.target = Plain(kContour);
    mGlides.shape.target = percent * Plain(kShape);
    mGlides.detuneSemitones.target = percent * Plain(kDetune);
    mGlides.subLevel.target = percent * Plain(kSubLevel);
    mGlides.volume.target = std::pow(10.0, Plain(kVolume) / 20.0);
    mBendSemitones.target = mBend * Plain(kBendRange);
    mVibratoSemitones.target = mModulation * percent * Plain(kVibrato);

    SEnvelopeShape& shape = mControls.envelope;
    shape.attackStep = 1.0 / std::max(1.0, milli * Plain(kAttack) * mControls.sampleRate);
    shape.decayFactor = CEnvelope::FactorFor(milli * Plain(kDecay), mControls.sampleRate);
    shape.sustain = percent * Plain(kSustain);
    shape.releaseFactor = CEnvelope::FactorFor(milli * Plain(kRelease), mControls.sampleRate);
}

void CExampleSynth::StepControls() noexcept
{
    for (SGlide* const glide : AllGlides())
        glide->Step(mGlideFactor);
    mBendSemitones.Step(mGlideFactor);
    mVibratoSemitones.Step(mGlideFactor);
    mLfoPhase += mLfoStep;
    mLfoPhase -= mLfoPhase >= 1.0 ? 1.0 : 0.0;

    mControls.cutoffOctaves = mGlides.cutoffOctaves.value;
    mControls.damping = mGlides.damping.value;
    mControls.contourOctaves = mGlides.contourOctaves.value;
    mControls.shape = mGlides.shape.value;
    mControls.detuneSemitones = mGlides.detuneSemitones.value;
    mControls.subLevel = mGlides.subLevel.value;
    mControls.transposition =
        mBendSemitones.value + mVibratoSemitones.value * std::sin(2.0 * std::numbers::pi * mLfoPhase);
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
    const auto channel = static_cast<std::uint8_t>(inMessage.bytes[0] & 0x0F);
    const auto first = static_cast<std::uint8_t>(inMessage.bytes[1] & 0x7F);
    const auto second = static_cast<std::uint8_t>(inMessage.bytes[2] & 0x7F);
    switch (inMessage.bytes[0] & 0xF0)
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
        mBendSemitones.target = mBend * Plain(kBendRange);
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
        mVibratoSemitones.target = mModulation * 0.01 * Plain(kVibrato);
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
    mBendSemitones.target = 0.0;
    mVibratoSemitones.target = 0.0;
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
