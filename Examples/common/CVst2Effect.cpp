#include "Examples/common/CVst2Effect.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <utility>

namespace
{
constexpr VstIntPtr kInterfaceVersion = 2400;
constexpr float kHighestSampleRate = 1e6F; // Hz; far above what any host runs at

// What effGetPlugCategory answers.
constexpr VstIntPtr kCategoryEffect = 1;
constexpr VstIntPtr kCategorySynth = 2;

/** Room in a buffer for a text of the given length; plug-ins must not write more than the interface allows.
 */
VstIntPtr GiveText(void* outText, std::string_view inText, std::int32_t inMaxLength)
{
    if (outText == nullptr)
        return 0;
    auto* const text = static_cast<char*>(outText);
    text[inText.copy(text, static_cast<std::size_t>(inMaxLength))] = '\0';
    return 1;
}

/** Both channels of a port are marked stereo: a host may ask for the first one only, or for both. */
VstIntPtr GivePin(std::span<const SStereoPort> inPorts, std::int32_t inPin, void* outPin)
{
    if (inPin < 0 || static_cast<std::size_t>(inPin) >= 2 * inPorts.size() || outPin == nullptr)
        return 0;
    const SStereoPort& port = inPorts[static_cast<std::size_t>(inPin) / 2];
    auto& pin = *static_cast<VstPinProperties*>(outPin);
    pin = {};
    (void)std::snprintf(pin.label, sizeof(pin.label), "%s", port.mLabel); // labels are shorter than the field
    (void)std::snprintf(pin.shortLabel, sizeof(pin.shortLabel), "%s", port.mShortLabel); // these too
    pin.flags = kVstPinIsActive | kVstPinIsStereo;
    pin.arrangementType = 1; // stereo
    return 1;
}

CVst2Effect& Self(AEffect* inEffect) noexcept { return *static_cast<CVst2Effect*>(inEffect->object); }

bool Holds(std::int32_t inIndex, std::size_t inCount) noexcept
{
    return inIndex >= 0 && static_cast<std::size_t>(inIndex) < inCount;
}
} // namespace

CVst2Effect::CVst2Effect(const SEffectInfo& inInfo, audioMasterCallback inHost)
    : mInfo(inInfo), mBank(inInfo.mUniqueId, inInfo.mParameters, inInfo.mPrograms), mHost(inHost)
{
    // `process`, the accumulating form, stays null: hosts of the last two decades use the replacing one.
    mEffect.magic = kEffectMagic;
    mEffect.dispatcher = &Dispatch;
    mEffect.setParameter = &SetParameter;
    mEffect.getParameter = &GetParameter;
    mEffect.processReplacing = &ProcessReplacing;
    mEffect.numPrograms = static_cast<std::int32_t>(inInfo.mPrograms.size());
    mEffect.numParams = static_cast<std::int32_t>(inInfo.mParameters.size());
    mEffect.numInputs = static_cast<std::int32_t>(2 * inInfo.mInputs.size());
    mEffect.numOutputs = static_cast<std::int32_t>(2 * inInfo.mOutputs.size());
    mEffect.flags = effFlagsCanReplacing | (inInfo.mIsSynth ? effFlagsIsSynth : 0) |
                    (inInfo.mKeepsChunk ? effFlagsProgramChunks : 0);
    mEffect.initialDelay = inInfo.mLatency;
    mEffect.ioRatio = 1.0F;
    mEffect.object = this;
    mEffect.uniqueID = inInfo.mUniqueId;
    mEffect.version = inInfo.mVersion;
}

void CVst2Effect::Receive(const VstMidiEvent& /*inEvent*/) noexcept {}

double CVst2Effect::Plain(std::size_t inParameter) const noexcept
{
    return mInfo.mParameters[inParameter].ToPlain(static_cast<double>(mBank.Value(inParameter)));
}

void CVst2Effect::SetEditor(std::unique_ptr<IEffectEditor> inEditor)
{
    mEditor = std::move(inEditor);
    mEffect.flags |= effFlagsHasEditor;
}

void CVst2Effect::BeginEdit(std::size_t inParameter) { TellHost(audioMasterBeginEdit, inParameter, 0.0F); }

void CVst2Effect::PerformEdit(std::size_t inParameter, float inValue)
{
    mBank.SetValue(inParameter, inValue); // first: hosts ask for the value while they hear of it
    TellHost(audioMasterAutomate, inParameter, mBank.Value(inParameter));
}

void CVst2Effect::EndEdit(std::size_t inParameter) { TellHost(audioMasterEndEdit, inParameter, 0.0F); }

void CVst2Effect::TellHost(std::int32_t inOpcode, std::size_t inParameter, float inValue)
{
    if (mHost != nullptr)
    {
        (void)mHost(&mEffect, inOpcode, static_cast<std::int32_t>(inParameter), 0, nullptr,
                    inValue); // the interface gives the answers no meaning
    }
}

VstIntPtr CVst2Effect::Dispatch(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                                VstIntPtr inValue, void* inPointer, float inOpt) noexcept
{
    if (inOpcode == effClose)
    {
        (void)Self(inEffect).AnswerEditor(effEditClose, nullptr); // some hosts leave it open
        delete &Self(inEffect); // made by the entry function, which gave it into the host's hands
        return 1;
    }
    try
    {
        return Self(inEffect).Answer(inOpcode, inIndex, inValue, inPointer, inOpt);
    }
    catch (...)
    {
        return 0; // out of memory: an exception must not reach a host that may be written in C
    }
}

void CVst2Effect::SetParameter(AEffect* inEffect, std::int32_t inIndex, float inValue) noexcept
{
    CProgramBank& bank = Self(inEffect).mBank;
    if (Holds(inIndex, bank.ParameterCount()))
        bank.SetValue(static_cast<std::size_t>(inIndex), inValue);
}

float CVst2Effect::GetParameter(AEffect* inEffect, std::int32_t inIndex) noexcept
{
    const CProgramBank& bank = Self(inEffect).mBank;
    return Holds(inIndex, bank.ParameterCount()) ? bank.Value(static_cast<std::size_t>(inIndex)) : 0.0F;
}

void CVst2Effect::ProcessReplacing(AEffect* inEffect, float** inInputs, float** inOutputs,
                                   std::int32_t inFrames) noexcept
{
    if (inFrames > 0 && inOutputs != nullptr)
        Self(inEffect).Render(inInputs, inOutputs, inFrames);
}

VstIntPtr CVst2Effect::Answer(std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue, void* inPointer,
                              float inOpt)
{
    switch (inOpcode)
    {
    case effSetSampleRate: SetSampleRate(inOpt); return 1;
    case effMainsChanged: Reset(); return 1;
    case effProcessEvents: ReceiveAll(static_cast<const VstEvents*>(inPointer)); return 1;
    case effSetProgram:
    case effGetProgram:
    case effSetProgramName:
    case effGetProgramName:
    case effGetProgramNameIndexed: return AnswerProgram(inOpcode, inIndex, inValue, inPointer);
    case effGetParamLabel:
    case effGetParamDisplay:
    case effGetParamName:
    case effCanBeAutomated: return AnswerParameter(inOpcode, inIndex, inPointer);
    case effGetChunk: return GiveChunk(inIndex, static_cast<void**>(inPointer));
    case effSetChunk: return TakeChunk(inIndex, inValue, inPointer);
    case effGetInputProperties: return GivePin(mInfo.mInputs, inIndex, inPointer);
    case effGetOutputProperties: return GivePin(mInfo.mOutputs, inIndex, inPointer);
    case effEditGetRect:
    case effEditOpen:
    case effEditClose:
    case effEditIdle: return AnswerEditor(inOpcode, inPointer);
    case effGetPlugCategory: return mInfo.mIsSynth ? kCategorySynth : kCategoryEffect;
    case effGetEffectName: return GiveText(inPointer, mInfo.mName, kVstMaxEffectNameLen);
    case effGetVendorString: return GiveText(inPointer, mInfo.mVendor, kVstMaxVendorStrLen);
    case effGetProductString: return GiveText(inPointer, mInfo.mName, kVstMaxProductStrLen);
    case effGetVendorVersion: return mInfo.mVersion;
    case effCanDo: return AnswerCanDo(static_cast<const char*>(inPointer));
    case effGetVstVersion: return kInterfaceVersion;
    default: return 0;
    }
}

VstIntPtr CVst2Effect::AnswerParameter(std::int32_t inOpcode, std::int32_t inIndex, void* outText) const
{
    if (!Holds(inIndex, mInfo.mParameters.size()))
        return 0;
    const auto index = static_cast<std::size_t>(inIndex);
    const SParameterInfo& parameter = mInfo.mParameters[index];
    switch (inOpcode)
    {
    case effCanBeAutomated: return 1;
    case effGetParamLabel: return GiveText(outText, parameter.mUnit, kVstMaxParamStrLen);
    case effGetParamName: return GiveText(outText, parameter.mName, kVstMaxParamStrLen);
    default: break;
    }
    std::array<char, kVstMaxParamStrLen + 1> text{};
    parameter.Format(static_cast<double>(mBank.Value(index)), text);
    return GiveText(outText, text.data(), kVstMaxParamStrLen);
}

VstIntPtr CVst2Effect::AnswerProgram(std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue,
                                     void* ioText)
{
    switch (inOpcode)
    {
    case effGetProgram: return static_cast<VstIntPtr>(mBank.Current());
    case effSetProgram:
        if (inValue >= 0)
            mBank.Select(static_cast<std::size_t>(inValue));
        return 0;
    case effSetProgramName:
        if (ioText != nullptr)
            mBank.Rename(mBank.Current(), static_cast<const char*>(ioText));
        return 0;
    case effGetProgramName: return GiveText(ioText, mBank.Name(mBank.Current()), kVstMaxProgNameLen);
    default: break;
    }
    return Holds(inIndex, mBank.ProgramCount())
               ? GiveText(ioText, mBank.Name(static_cast<std::size_t>(inIndex)), kVstMaxProgNameLen)
               : 0;
}

VstIntPtr CVst2Effect::AnswerEditor(std::int32_t inOpcode, void* inPointer)
{
    if (mEditor == nullptr)
        return 0;
    switch (inOpcode)
    {
    case effEditOpen: return mEditor->Open(inPointer) ? 1 : 0;
    case effEditClose: mEditor->Close(); return 1;
    case effEditIdle: mEditor->Idle(); return 1;
    default: break;
    }
    if (inPointer == nullptr)
        return 0;
    mEditorRectangle = mEditor->Rectangle();
    *static_cast<ERect**>(inPointer) = &mEditorRectangle;
    return 1;
}

VstIntPtr CVst2Effect::AnswerCanDo(const char* inQuestion) const
{
    const std::string_view question = inQuestion != nullptr ? inQuestion : "";
    if (question == "receiveVstEvents" || question == "receiveVstMidiEvent")
        return mInfo.mIsSynth ? 1 : -1;
    return 0;
}

VstIntPtr CVst2Effect::GiveChunk(std::int32_t inScope, void** outChunk)
{
    if (!mInfo.mKeepsChunk || outChunk == nullptr)
        return 0;
    mChunk = mBank.Save(inScope == 0 ? CProgramBank::kBank : CProgramBank::kProgram);
    *outChunk = mChunk.data();
    return static_cast<VstIntPtr>(mChunk.size());
}

VstIntPtr CVst2Effect::TakeChunk(std::int32_t inScope, VstIntPtr inSize, const void* inChunk)
{
    if (!mInfo.mKeepsChunk || inChunk == nullptr || inSize <= 0)
        return 0;
    const std::span chunk(static_cast<const std::byte*>(inChunk), static_cast<std::size_t>(inSize));
    return mBank.Load(inScope == 0 ? CProgramBank::kBank : CProgramBank::kProgram, chunk) ? 1 : 0;
}

void CVst2Effect::SetSampleRate(float inSampleRate)
{
    if (std::isfinite(inSampleRate) && inSampleRate > 0.0F)
        Prepare(static_cast<double>(std::min(inSampleRate, kHighestSampleRate)));
}

void CVst2Effect::ReceiveAll(const VstEvents* inEvents) noexcept
{
    if (inEvents == nullptr)
        return;
    const VstEvent* const* const events = inEvents->events;
    for (std::int32_t i = 0; i < inEvents->numEvents; ++i)
        if (events[i] != nullptr && events[i]->type == kVstMidiType)
            Receive(*reinterpret_cast<const VstMidiEvent*>(events[i]));
}
