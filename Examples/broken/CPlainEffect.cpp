#include "Examples/broken/CPlainEffect.h"

#include <array>
#include <cmath>
#include <numbers>

namespace
{
constexpr std::array<SParameterInfo, 2> kParameters{{
    {"Gain", "", 0.0, 1.0, 2},
    {"Balance", "", 0.0, 1.0, 2},
}};
constexpr std::array<double, 2> kInitial = {0.8, 0.5};
constexpr SFactoryProgram kPrograms[] = {{"Default", kInitial}};
constexpr SStereoPort kPorts[] = {{"Main", "Main"}};

SEffectInfo Info(const SPlainOptions& inOptions)
{
    return {.uniqueId = inOptions.uniqueId,
            .version = 1000,
            .name = "Broken Example",
            .vendor = "Example Audio",
            .parameters = kParameters,
            .programs = kPrograms,
            .inputs = inOptions.isSynth ? std::span<const SStereoPort>() : kPorts,
            .outputs = kPorts,
            .latency = inOptions.latency,
            .isSynth = inOptions.isSynth,
            .keepsChunk = inOptions.keepsChunk};
}
} // namespace

CPlainEffect::CPlainEffect(audioMasterCallback inHost, const SPlainOptions& inOptions)
    : CVst2Effect(Info(inOptions), inHost), mHost(inHost), mIsSynth(inOptions.isSynth)
{
}

void CPlainEffect::Prepare(double inSampleRate) { mSampleRate = inSampleRate; }

void CPlainEffect::Reset() noexcept
{
    mPhase = 0.0;
    mNote = -1;
}

void CPlainEffect::Receive(const VstMidiEvent& inEvent) noexcept
{
    const int status = inEvent.midiData[0] & 0xF0;
    const int first = inEvent.midiData[1] & 0x7F;
    const int second = inEvent.midiData[2] & 0x7F;
    if (status == 0x90 && second > 0)
    {
        mNote = first;
    }
    else if (status == 0x80 || status == 0x90)
    {
        EndNote(first);
    }
    else if (status == 0xB0 && (first == 120 || first == 123))
    {
        mNote = -1;
    }
}

void CPlainEffect::EndNote(int inNote) noexcept
{
    if (inNote == mNote)
    {
        mNote = -1;
    }
}

void CPlainEffect::Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept
{
    const auto gain = static_cast<float>(Plain(kGain));
    const auto balance = static_cast<float>(Plain(kBalance));
    const float levels[] = {gain * (1.0F - balance), gain * balance};
    const double step = 440.0 * std::pow(2.0, (mNote - 69) / 12.0) / mSampleRate;
    for (std::int32_t frame = 0; frame < inFrames; ++frame)
    {
        float note = 0.0F;
        if (mIsSynth && mNote >= 0)
        {
            note = static_cast<float>(0.5 * std::cos(2.0 * std::numbers::pi * mPhase));
            mPhase += step;
            mPhase -= std::floor(mPhase);
        }
        for (std::size_t channel = 0; channel < 2; ++channel)
        {
            inOutputs[channel][frame] = levels[channel] * (mIsSynth ? note : inInputs[channel][frame]);
        }
    }
}
