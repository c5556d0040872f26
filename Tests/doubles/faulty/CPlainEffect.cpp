#include "Tests/doubles/faulty/CPlainEffect.h"

#include <array>
#include <cmath>
#include <cstring>
#include <numbers>
#include <utility>

namespace
{
constexpr std::array<const char*, 8> kNames{"Gain", "Balance", "C", "D", "E", "F", "G", "H"};
constexpr auto kParameters = []
{
    std::array<SParameterInfo, kNames.size()> parameters{};
    for (std::size_t i = 0; i < kNames.size(); ++i)
        parameters[i] = {kNames[i], "", 0.0, 1.0, 2};
    return parameters;
}();
constexpr std::array<double, kNames.size()> kInitial{0.8, 0.5};
constexpr SFactoryProgram kPrograms[] = {{"Default", kInitial}};
constexpr SStereoPort kPorts[] = {{"Main", "Main"}};

SEffectInfo Info(const SPlainOptions& inOptions)
{
    return {.mUniqueId = 0x45784272, // "ExBr"
            .mVersion = 1000,
            .mName = "Faulty",
            .mVendor = "Example Audio",
            .mParameters = std::span(kParameters).first(inOptions.mParameters),
            .mPrograms = kPrograms,
            .mInputs = inOptions.mIsSynth ? std::span<const SStereoPort>() : kPorts,
            .mOutputs = kPorts,
            .mLatency = 0,
            .mIsSynth = inOptions.mIsSynth,
            .mKeepsChunk = true};
}
} // namespace

CPlainEffect::CPlainEffect(audioMasterCallback inHost, const SPlainOptions& inOptions)
    : CVst2Effect(Info(inOptions), inHost), mHost(inHost), mPlain(*Effect()), mOptions(inOptions)
{
    Effect()->dispatcher = [](AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                              VstIntPtr inValue, void* inPointer, float inOpt)
    {
        CPlainEffect& self = Self(inEffect);
        const SCall call{inOpcode, inIndex, inValue, inPointer, inOpt};
        if (inOpcode == effClose && self.mOnClose)
            self.mOnClose();
        return inOpcode != effClose && self.mOnCall ? self.mOnCall(call) : self.Answer(call);
    };
    Effect()->processReplacing =
        [](AEffect* inEffect, float** inInputs, float** inOutputs, std::int32_t inFrames)
    {
        CPlainEffect& self = Self(inEffect);
        const SBlock block{inInputs, inOutputs, inFrames};
        self.mOnBlock ? self.mOnBlock(block) : self.Render(block);
    };
    Effect()->setParameter = [](AEffect* inEffect, std::int32_t inIndex, float inValue)
    {
        CPlainEffect& self = Self(inEffect);
        self.mOnSet ? self.mOnSet(inIndex, inValue) : self.Set(inIndex, inValue);
    };
}

CPlainEffect& CPlainEffect::Self(AEffect* inEffect) noexcept
{
    return static_cast<CPlainEffect&>(*static_cast<CVst2Effect*>(inEffect->object));
}

VstIntPtr CPlainEffect::Answer(const SCall& inCall)
{
    return mPlain.dispatcher(Effect(), inCall.mOpcode, inCall.mIndex, inCall.mValue, inCall.mPointer,
                             inCall.mOpt);
}

VstIntPtr CPlainEffect::CallHost(std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue,
                                 void* inPointer)
{
    return mHost(Effect(), inOpcode, inIndex, inValue, inPointer, 0.0F);
}

void CPlainEffect::SendMidi(const std::array<std::uint8_t, 3>& inMessage, std::int32_t inFrame)
{
    VstMidiEvent event{};
    event.type = kVstMidiType;
    event.deltaFrames = inFrame;
    std::memcpy(event.midiData, inMessage.data(), inMessage.size());
    VstEvents list{1, 0, {reinterpret_cast<VstEvent*>(&event), nullptr}};
    (void)CallHost(audioMasterProcessEvents, 0, 0, &list); // what is sent is the host's
}

void CPlainEffect::Turn(std::int32_t inIndex)
{
    for (const std::int32_t opcode : {audioMasterBeginEdit, audioMasterAutomate, audioMasterEndEdit})
        (void)CallHost(opcode, inIndex); // the interface gives the answers no meaning
}

void CPlainEffect::Before(std::int32_t inOpcode, std::function<void()> inAction)
{
    mOnCall = [this, inOpcode, action = std::move(inAction)](const SCall& inCall)
    {
        if (inCall.mOpcode == inOpcode)
            action();
        return Answer(inCall);
    };
}

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
        mNote = first;
    else if (((status == 0x80 || status == 0x90) && first == mNote && mOptions.mEndsNotes) ||
             (status == 0xB0 && (first == 120 || first == 123)))
        mNote = -1;
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
        if (mOptions.mIsSynth && mNote >= 0)
        {
            note = static_cast<float>(0.5 * std::cos(2.0 * std::numbers::pi * mPhase));
            mPhase += step;
            mPhase -= std::floor(mPhase);
        }
        for (std::size_t channel = 0; channel < 2; ++channel)
        {
            inOutputs[channel][frame] =
                levels[channel] * (mOptions.mIsSynth ? note : inInputs[channel][frame]);
        }
    }
}

CPlainEffect& MakePlain(audioMasterCallback inHost, const SPlainOptions& inOptions)
{
    return *new CPlainEffect(inHost, inOptions); // owned by its record: effClose deletes it
}

AEffect* MakeFaulty(audioMasterCallback inHost, void (*inFault)(CPlainEffect&))
{
    CPlainEffect& effect = MakePlain(inHost);
    inFault(effect);
    return effect.Effect();
}
