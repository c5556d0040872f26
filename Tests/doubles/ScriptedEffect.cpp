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
    const char* mName;
    std::int32_t mNumber;
    EArgument mArgument;
};
constexpr SOpcode kOpcodes[] = {
    {"effOpen", effOpen, EArgument::kNone},
    {"effClose", effClose, EArgument::kNone},
    {"effSetProgram", effSetProgram, EArgument::kValue},
    {"effGetProgram", effGetProgram, EArgument::kNone},
    {"effBeginSetProgram", effBeginSetProgram, EArgument::kNone},
    {"effEndSetProgram", effEndSetProgram, EArgument::kNone},
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
                     [inOpcode](const SOpcode& inEntry) { return inEntry.mNumber == inOpcode; });
    if (found == std::end(kOpcodes))
        return "opcode " + std::to_string(inOpcode);
    const std::string name = found->mName;
    switch (found->mArgument)
    {
    case EArgument::kIndex: return name + " " + std::to_string(inCall.mIndex);
    case EArgument::kValue: return name + " " + std::to_string(inCall.mValue);
    case EArgument::kOpt: return name + " " + Number(inCall.mOpt);
    case EArgument::kNone: break;
    }
    return inOpcode == effCanDo || inOpcode == effSetProgramName
               ? name + " " + static_cast<const char*>(inCall.mPointer)
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
    mShape.magic = kEffectMagic;
    mShape.uniqueID = 0x54657374;
    mShape.version = 1;
    mTexts[{effGetEffectName, 0}] = "Scripted";
}

void SPluginScript::Reset()
{
    static_cast<SPluginSettings&>(*this) = {};
    mInstances.clear();
    mEvents.clear();
    mOutOfRangeCalls = 0;
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
    if (mOnEntry)
        mOnEntry(inHost);
    if (mFaults.count(kEntry) != 0)
        throw SScriptedFault{};
    if (mEntryReturnsNull)
        return nullptr;
    if (!mSharesOneEffect || mInstances.empty())
        mInstances.push_back(std::make_unique<ScriptedEffect>(*this, inHost));
    return &mInstances.back()->Effect();
}

ScriptedEffect::ScriptedEffect(SPluginScript& inScript, audioMasterCallback inHost)
    : mScript(inScript),
      mHost(inHost),
      mEffect(inScript.mShape),
      mParameters(inScript.mParameters),
      mBankChunk(inScript.mBankChunk),
      mProgramChunk(inScript.mProgramChunk)
{
    mEffect.dispatcher = Dispatch;
    mEffect.setParameter = SetParameter;
    mEffect.getParameter = GetParameter;
    mEffect.processReplacing = Process;
    mEffect.object = this;
    if (!mScript.mShapes.empty())
    {
        mShape = mScript.mShapes.front();
        if (mScript.mShapes.size() > 1)
            mScript.mShapes.erase(mScript.mShapes.begin());
        mEffect.numInputs = mShape->mNumInputs;
        mEffect.numOutputs = mShape->mNumOutputs;
    }
    if (!mParameters.empty())
        mEffect.numParams = static_cast<std::int32_t>(mParameters.size());
    if (mScript.mOnCreate)
        mScript.mOnCreate(mEffect);
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
    if (script.mFaults.count(inOpcode) != 0)
        throw SScriptedFault{};
    if (const auto hook = script.mHooks.find(inOpcode); hook != script.mHooks.end())
        hook->second(self, call);
    const auto result = script.mResults.find(inOpcode);
    const VstIntPtr answer = self.Answer(inOpcode, call);
    if (inOpcode == effClose && !script.mSharesOneEffect)
        std::erase_if(script.mInstances, [&self](const auto& inOther) { return inOther.get() == &self; });
    return result != script.mResults.end() ? result->second : answer;
}

VstIntPtr ScriptedEffect::Answer(std::int32_t inOpcode, const SDispatch& inCall)
{
    if (const auto text = mScript.mTexts.find({inOpcode, inCall.mIndex}); text != mScript.mTexts.end())
    {
        std::memcpy(inCall.mPointer, text->second.c_str(), text->second.size() + 1);
        return 1;
    }
    switch (inOpcode)
    {
    case effSetProgram: mProgram = static_cast<std::int32_t>(inCall.mValue); return 0;
    case effGetProgram: return mProgram;
    case effEditGetRect:
        *static_cast<ERect**>(inCall.mPointer) = mScript.mGivesEditorSize ? &mScript.mEditorSize : nullptr;
        return mScript.mGivesEditorSize ? 1 : 0;
    case effEditOpen: return 1;
    case effGetChunk: return GiveChunk(inCall.mIndex == 0 ? mBankChunk : mProgramChunk, inCall.mPointer);
    case effSetChunk:
    {
        const auto* const bytes = static_cast<const std::uint8_t*>(inCall.mPointer);
        (inCall.mIndex == 0 ? mBankChunk : mProgramChunk).assign(bytes, bytes + inCall.mValue);
        return 1;
    }
    case effProcessEvents: RecordEvents(*static_cast<const VstEvents*>(inCall.mPointer)); return 1;
    case effGetInputProperties: return AnswerPin(mShape ? mShape->mInputPins : mScript.mInputPins, inCall);
    case effGetOutputProperties: return AnswerPin(mShape ? mShape->mOutputPins : mScript.mOutputPins, inCall);
    case effCanDo: return mShape ? mShape->mCanDo : 0;
    case effGetMidiProgramName:
    case effGetMidiProgramCategory: return AnswerMidi(inOpcode, inCall);
    default: return 0;
    }
}

VstIntPtr ScriptedEffect::AnswerPin(const std::vector<SScriptedPin>& inPins, const SDispatch& inCall) const
{
    if (static_cast<std::size_t>(inCall.mIndex) >= inPins.size())
        return 0;
    const SScriptedPin& pin = inPins[static_cast<std::size_t>(inCall.mIndex)];
    auto& properties = *static_cast<VstPinProperties*>(inCall.mPointer);
    std::memcpy(properties.label, pin.mLabel.c_str(),
                std::min(pin.mLabel.size() + 1, sizeof(properties.label)));
    properties.flags = pin.mFlags;
    return 1;
}

VstIntPtr ScriptedEffect::AnswerMidi(std::int32_t inOpcode, const SDispatch& inCall) const
{
    if (inOpcode == effGetMidiProgramCategory)
        return GiveName<MidiProgramCategory>(mScript.mMidiCategories, inCall.mIndex, inCall.mPointer);
    auto& program = *static_cast<MidiProgramName*>(inCall.mPointer);
    program.parentCategoryIndex = mScript.mMidiParent;
    program.midiBankLsb = static_cast<char>(-3);
    program.midiBankMsb = 5;
    return GiveName<MidiProgramName>(mScript.mMidiPrograms, inCall.mIndex, inCall.mPointer);
}

void ScriptedEffect::RecordEvents(const VstEvents& inEvents)
{
    constexpr std::int32_t kMostRead = 300;
    const VstEvent* const* const list = inEvents.events;
    std::vector<VstMidiEvent>& events = mScript.mEvents.emplace_back();
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
    if (self.mScript.mReportsSets)
        self.CallHost(audioMasterAutomate, inIndex, nullptr, inValue);
    if (const auto coupled = self.mScript.mCoupled.find(inIndex); coupled != self.mScript.mCoupled.end())
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
        ++mScript.mOutOfRangeCalls;
    return has;
}

void ScriptedEffect::TakeValue(std::int32_t inIndex, float inValue)
{
    const auto steps = static_cast<float>(mScript.mSteps);
    mParameters.at(static_cast<std::size_t>(inIndex)) =
        mScript.mSteps > 0 ? std::round(inValue * steps) / steps : inValue;
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
    if (self.mScript.mOnProcess)
    {
        self.mScript.mOnProcess(self, inInputs, inOutputs, inFrames);
        return;
    }
    for (std::int32_t channel = 0; channel < inEffect->numOutputs; ++channel)
        if (channel < inEffect->numInputs)
            std::copy_n(inInputs[channel], inFrames, inOutputs[channel]);
        else
            std::fill_n(inOutputs[channel], inFrames, 0.0F);
}
