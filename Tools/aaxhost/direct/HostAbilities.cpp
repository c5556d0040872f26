#include "Tools/aaxhost/direct/HostAbilities.h"

#include "Tools/vst2driver/CDrivenPlugin.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace
{
bool IsAble(const SServices& inServices, std::string_view inWhat)
{
    const std::pair<std::string_view, bool> abilities[] = {
        {"sendVstEvents", true},
        {"sendVstMidiEvent", true},
        {"sendVstTimeInfo", true},
        {"startStopProcess", true},
        {"receiveVstEvents", inServices.mTakesMidi},
        {"receiveVstMidiEvent", inServices.mTakesMidi},
        {"sizeWindow", inServices.mSizes},
        {"supplyIdle", inServices.mIdleTime},
    };
    return std::ranges::find(abilities, std::pair(inWhat, true)) != std::end(abilities);
}
} // namespace

std::optional<VstIntPtr> AnswerQuestion(const SHostFacts& inFacts, const SHostCall& inCall)
{
    if (!inFacts.mServices.mAnswers)
        return std::nullopt;
    const auto* const question = static_cast<const char*>(inCall.mPointer);
    switch (inCall.mOpcode)
    {
    case audioMasterGetSampleRate: return static_cast<VstIntPtr>(inFacts.mRate);
    case audioMasterGetBlockSize: return CDrivenPlugin::kMaxFrames;
    case audioMasterGetCurrentProcessLevel:
        return inFacts.mIsRendering ? kVstProcessLevelRealtime : kVstProcessLevelUser;
    case audioMasterGetAutomationState: return kVstAutomationOff;
    case audioMasterGetLanguage: return kVstLangEnglish;
    case audioMasterGetDirectory: return reinterpret_cast<VstIntPtr>(inFacts.mFolder.data());
    case audioMasterCanDo: return question != nullptr && IsAble(inFacts.mServices, question) ? 1 : 0;
    default: return std::nullopt;
    }
}
