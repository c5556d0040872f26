#include "Tests/doubles/ScriptedEffect.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace
{
struct SScriptedFault
{
};

enum class EArgument
{
    kNone,
    kIndex,
    kValue,
    kOpt
};
struct SOpcode
{
    const char* name;
    std::int32_t number;
    EArgument argument;
};
constexpr SOpcode kOpcodes[] = {
    {"effOpen", effOpen, EArgument::kNone},
    {"effClose", effClose, EArgument::kNone},
    {"effSetProgram", effSetProgram, EArgument::kValue},
    {"effGetProgram", effGetProgram, EArgument::kNone},
    {"effSetProgramName", effSetProgramName, EArgument::kNone},
    {"effGetParamLabel", effGetParamLabel, EArgument::kIndex},
    {"effGetParamDisplay", effGetParamDisplay, EArgument::kIndex},
    {"effGetParamName", effGetParamName, EArgument::kIndex},
    {"effSetSampleRate", effSetSampleRate, EArgument::kOpt},
    {"effSetBlockSize", effSetBlockSize, EArgument::kValue},
    {"effMainsChanged", effMainsChanged, EArgument::kValue},
    {"effEditGetRect", effEditGetRect, EArgument::kNone},
    {"effEditOpen", effEditOpen, EArgument::kNone},
    {"effEditClose", effEditClose, EArgument::kNone},
    {"effEditIdle", effEditIdle, EArgument::kNone},
    {"effGetChunk", effGetChunk, EArgument::kIndex},
    {"effSetChunk", effSetChunk, EArgument::kIndex},
    {"effProcessEvents", effProcessEvents, EArgument::kNone},
    {"effGetProgramNameIndexed", effGetProgramNameIndexed, EArgument::kIndex},
    {"effGetInputProperties", effGetInputProperties, EArgument::kIndex},
    {"effGetOutputProperties", effGetOutputProperties, EArgument::kIndex},
    {"effGetEffectName", effGetEffectName, EArgument::kNone},
    {"effGetVendorString", effGetVendorString, EArgument::kNone},
    {"effGetProductString", effGetProductString, EArgument::kNone},
    {"effVendorSpecific", effVendorSpecific, EArgument::kIndex},
    {"effCanDo", effCanDo, EArgument::kNone},
    {"effIdle", effIdle, EArgument::kNone},
    {"effGetVstVersion", effGetVstVersion, EArgument::kNone},
    {"effGetMidiProgramName", effGetMidiProgramName, EArgument::kIndex},
    {"effGetMidiProgramCategory", effGetMidiProgramCategory, EArgument::kIndex},
    {"effStartProcess", effStartProcess, EArgument::kNone},
    {"effStopProcess", effStopProcess, EArgument::kNone},
};

std::string Number(double inValue)
{
    char text[32];
    (void)std::snprintf(text, sizeof(text), "%g", inValue); // 32 characters hold any %g
    return text;
}

std::string Line(std::int32_t inOpcode, const SDispatch& inCall)
{
    const auto* const found =
        std::find_if(std::begin(kOpcodes), std::end(kOpcodes),
                     [inOpcode](const SOpcode& inEntry) { return inEntry.number == inOpcode; });
    if (found == std::end(kOpcodes))
        return "opcode " + std::to_string(inOpcode);
    const std::string name = found->name;
    switch (found->argument)
    {
    case EArgument::kIndex: return name + " " + std::to_string(inCall.index);
    case EArgument::kValue: return name + " " + std::to_string(inCall.value);
    case EArgument::kOpt: return name + " " + Number(inCall.opt);
    case EArgument::kNone: break;
    }
    return inOpcode == effCanDo || inOpcode == effSetProgramName
               ? name + " " + static_cast<const char*>(inCall.pointer)
               : name;
}

ScriptedEffect& Self(AEffect* inEffect) { return *static_cast<ScriptedEffect*>(inEffect->object); }

VstIntPtr GiveChunk(std::vector<std::uint8_t>& inChunk, void* outChunk)
{
    *static_cast<void**>(outChunk) = inChunk.data();
    return static_cast<VstIntPtr>(inChunk.size());
}

template <typename Record>
VstIntPtr GiveName(const std::vector<std::string>& inNames, std::int32_t inIndex, void* outRecord)
{
    if (inIndex >= 0 && static_cast<std::size_t>(inIndex) < inNames.size())
    {
        const std::string& name = inNames[static_cast<std::size_t>(inIndex)];
        auto& field = static_cast<Record*>(outRecord)->name;
        std::memcpy(field, name.c_str(), std::min(name.size() + 1, sizeof(field)));
    }
    return static_cast<VstIntPtr>(inNames.size());
}
} // namespace

SPluginSettings::SPluginSettings()
{
    shape.magic = kEffectMagic;
    shape.uniqueID = 0x54657374;
    shape.version = 1;
    texts[{effGetEffectName, 0}] = "Scripted";
}

void SPluginScript::Reset()
{
    static_cast<SPluginSettings&>(*this) = {};
    instances.clear();
    events.clear();
    outOfRangeCalls = 0;
    (void)TakeLog(); // emptied
}

void SPluginScript::Log(const std::string& inLine)
{
    const std::lock_guard lock(mLogMutex);
    mLog.push_back(inLine);
}

std::vector<std::string> SPluginScript::TakeLog()
{
    const std::lock_guard lock(mLogMutex);
    return std::exchange(mLog, {});
}

AEffect* SPluginScript::Enter(audioMasterCallback inHost)
{
    if (onEntry)
        onEntry(inHost);
    if (faults.count(kEntry) != 0)
        throw SScriptedFault{};
    if (entryReturnsNull)
        return nullptr;
    if (!sharesOneEffect || instances.empty())
        instances.push_back(std::make_unique<ScriptedEffect>(*this, inHost));
    return &instances.back()->Effect();
}

ScriptedEffect::ScriptedEffect(SPluginScript& inScript, audioMasterCallback inHost)
    : mScript(inScript),
      mHost(inHost),
      mEffect(inScript.shape),
      mParameters(inScript.parameters),
      mBankChunk(inScript.bankChunk),
      mProgramChunk(inScript.programChunk)
{
    mEffect.dispatcher = Dispatch;
    mEffect.setParameter = SetParameter;
    mEffect.getParameter = GetParameter;
    mEffect.processReplacing = Process;
    mEffect.object = this;
    if (!mScript.shapes.empty())
    {
        mShape = mScript.shapes.front();
        if (mScript.shapes.size() > 1)
            mScript.shapes.erase(mScript.shapes.begin());
        mEffect.numInputs = mShape->numInputs;
        mEffect.numOutputs = mShape->numOutputs;
    }
    if (!mParameters.empty())
        mEffect.numParams = static_cast<std::int32_t>(mParameters.size());
    if (mScript.onCreate)
        mScript.onCreate(mEffect);
}

VstIntPtr ScriptedEffect::CallHost(std::int32_t inOpcode, std::int32_t inIndex, void* inPointer, float inOpt,
                                   VstIntPtr inValue)
{
    return mHost(&mEffect, inOpcode, inIndex, inValue, inPointer, inOpt);
}

VstIntPtr ScriptedEffect::Dispatch(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                                   VstIntPtr inValue, void* inPointer, float inOpt)
{
    ScriptedEffect& self = Self(inEffect);
    SPluginScript& script = self.mScript;
    const SDispatch call{inIndex, inValue, inPointer, inOpt};
    script.Log(Line(inOpcode, call));
    if (script.faults.count(inOpcode) != 0)
        throw SScriptedFault{};
    if (const auto hook = script.hooks.find(inOpcode); hook != script.hooks.end())
        hook->second(self, call);
    const auto result = script.results.find(inOpcode);
    const VstIntPtr answer = self.Answer(inOpcode, call);
    if (inOpcode == effClose && !script.sharesOneEffect)
        std::erase_if(script.instances, [&self](const auto& inOther) { return inOther.get() == &self; });
    return result != script.results.end() ? result->second : answer;
}

VstIntPtr ScriptedEffect::Answer(std::int32_t inOpcode, const SDispatch& inCall)
{
    if (const auto text = mScript.texts.find({inOpcode, inCall.index}); text != mScript.texts.end())
    {
        std::memcpy(inCall.pointer, text->second.c_str(), text->second.size() + 1);
        return 1;
    }
    switch (inOpcode)
    {
    case effSetProgram: mProgram = static_cast<std::int32_t>(inCall.value); return 0;
    case effGetProgram: return mProgram;
    case effEditGetRect:
        *static_cast<ERect**>(inCall.pointer) = mScript.givesEditorSize ? &mScript.editorSize : nullptr;
        return mScript.givesEditorSize ? 1 : 0;
    case effEditOpen: return 1;
    case effGetChunk: return GiveChunk(inCall.index == 0 ? mBankChunk : mProgramChunk, inCall.pointer);
    case effSetChunk:
    {
        const auto* const bytes = static_cast<const std::uint8_t*>(inCall.pointer);
        (inCall.index == 0 ? mBankChunk : mProgramChunk).assign(bytes, bytes + inCall.value);
        return 1;
    }
    case effProcessEvents: RecordEvents(*static_cast<const VstEvents*>(inCall.pointer)); return 1;
    case effGetInputProperties: return AnswerPin(mShape ? mShape->inputPins : mScript.inputPins, inCall);
    case effGetOutputProperties: return AnswerPin(mShape ? mShape->outputPins : mScript.outputPins, inCall);
    case effCanDo: return mShape ? mShape->canDo : 0;
    case effGetMidiProgramName:
    case effGetMidiProgramCategory: return AnswerMidi(inOpcode, inCall);
    default: return 0;
    }
}

VstIntPtr ScriptedEffect::AnswerPin(const std::vector<SScriptedPin>& inPins, const SDispatch& inCall) const
{
    if (static_cast<std::size_t>(inCall.index) >= inPins.size())
        return 0;
    const SScriptedPin& pin = inPins[static_cast<std::size_t>(inCall.index)];
    auto& properties = *static_cast<VstPinProperties*>(inCall.pointer);
    std::memcpy(properties.label, pin.label.c_str(),
                std::min(pin.label.size() + 1, sizeof(properties.label)));
    properties.flags = pin.flags;
    return 1;
}

VstIntPtr ScriptedEffect::AnswerMidi(std::int32_t inOpcode, const SDispatch& inCall) const
{
    if (inOpcode == effGetMidiProgramCategory)
        return GiveName<MidiProgramCategory>(mScript.midiCategories, inCall.index, inCall.pointer);
    auto& program = *static_cast<MidiProgramName*>(inCall.pointer);
    program.parentCategoryIndex = mScript.midiParent;
    program.midiBankLsb = static_cast<char>(-3);
    program.midiBankMsb = 5;
    return GiveName<MidiProgramName>(mScript.midiPrograms, inCall.index, inCall.pointer);
}

void ScriptedEffect::RecordEvents(const VstEvents& inEvents)
{
    constexpr std::int32_t kMostRead = 300;
    const VstEvent* const* const list = inEvents.events;
    std::vector<VstMidiEvent>& events = mScript.events.emplace_back();
    for (std::int32_t i = 0; i < std::min(inEvents.numEvents, kMostRead); ++i)
        std::memcpy(&events.emplace_back(), list[i], sizeof(VstMidiEvent));
}

void ScriptedEffect::SetParameter(AEffect* inEffect, std::int32_t inIndex, float inValue)
{
    ScriptedEffect& self = Self(inEffect);
    self.mScript.Log("setParameter " + std::to_string(inIndex) + " " + Number(inValue));
    if (!self.HasParameter(inIndex))
        return;
    self.TakeValue(inIndex, inValue);
    if (self.mScript.reportsSets)
        self.CallHost(audioMasterAutomate, inIndex, nullptr, inValue);
    if (const auto coupled = self.mScript.coupled.find(inIndex); coupled != self.mScript.coupled.end())
    {
        for (const std::int32_t other : coupled->second)
        {
            self.TakeValue(other, inValue);
            self.CallHost(audioMasterAutomate, other, nullptr, inValue);
        }
    }
}

bool ScriptedEffect::HasParameter(std::int32_t inIndex)
{
    const bool has =
        inIndex >= 0 && inIndex < mEffect.numParams && static_cast<std::size_t>(inIndex) < mParameters.size();
    if (!has)
        ++mScript.outOfRangeCalls;
    return has;
}

void ScriptedEffect::TakeValue(std::int32_t inIndex, float inValue)
{
    const auto steps = static_cast<float>(mScript.steps);
    mParameters.at(static_cast<std::size_t>(inIndex)) =
        mScript.steps > 0 ? std::round(inValue * steps) / steps : inValue;
}

float ScriptedEffect::GetParameter(AEffect* inEffect, std::int32_t inIndex)
{
    ScriptedEffect& self = Self(inEffect);
    return self.HasParameter(inIndex) ? self.mParameters[static_cast<std::size_t>(inIndex)] : 0.0F;
}

void ScriptedEffect::Process(AEffect* inEffect, float** inInputs, float** inOutputs, std::int32_t inFrames)
{
    ScriptedEffect& self = Self(inEffect);
    self.mScript.Log("processReplacing " + std::to_string(inFrames));
    if (self.mScript.onProcess)
    {
        self.mScript.onProcess(self, inInputs, inOutputs, inFrames);
        return;
    }
    for (std::int32_t channel = 0; channel < inEffect->numOutputs; ++channel)
        if (channel < inEffect->numInputs)
            std::copy_n(inInputs[channel], inFrames, inOutputs[channel]);
        else
            std::fill_n(inOutputs[channel], inFrames, 0.0F);
}
