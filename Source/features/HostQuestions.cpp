#include "Source/features/HostQuestions.h"

#include "Source/plugins/ProductFeatures.h"

#include <string_view>

namespace
{
constexpr VstIntPtr kVendorVersion = 1000;

struct SAbility
{
    std::string_view mText;
    bool mIsThere;
};

/** @return 1 for what the product does, -1 for what it never does, 0 for an unknown text. */
VstIntPtr AnswerCanDo(const char* inText) noexcept
{
    if (inText == nullptr)
        return 0;
    const SAbility abilities[] = {
        {"sendVstEvents", true},
        {"sendVstMidiEvent", true},
        {"sendVstTimeInfo", true},
        {"receiveVstEvents", kProductFeatures.mMidiOutput},
        {"receiveVstMidiEvent", kProductFeatures.mMidiOutput},
        {"reportConnectionChanges", false},
        {"acceptIOChanges", false}, // of the latency only
        {"sizeWindow", kProductFeatures.mResize},
        {"startStopProcess", true},
        {"supplyIdle", kProductFeatures.mIdle},
        {"sendVstMidiEventFlagIsRealtime", false},
        {"offline", false},
        {"openFileSelector", false},
        {"closeFileSelector", false},
        {"editFile", false},
        {"shellCategory", false},
    };
    for (const SAbility& ability : abilities)
        if (ability.mText == inText)
            return ability.mIsThere ? 1 : -1;
    return 0;
}

/** 0 where the host's number is no rate: what becomes of one that is too large differs between processors. */
VstIntPtr WholeRate(float inHertz) noexcept
{
    constexpr float highest = 1e9F;
    return inHertz > 0.0F && inHertz <= highest ? static_cast<VstIntPtr>(inHertz) : 0;
}
} // namespace

std::optional<VstIntPtr> AnswerQuestion(const SHostCall& inCall, const SHostFacts& inFacts) noexcept
{
    switch (inCall.mOpcode)
    {
    case audioMasterGetSampleRate: return WholeRate(inFacts.mSampleRate);
    case audioMasterGetBlockSize: return inFacts.mBlockSize;
    case audioMasterGetCurrentProcessLevel:
        return inFacts.mIsRendering ? kVstProcessLevelRealtime : kVstProcessLevelUser;
    case audioMasterGetAutomationState: return kVstAutomationOff;
    case audioMasterGetVendorString:
        (void)GiveText("AaxAdapter", inCall.mPointer);
        return inCall.mPointer != nullptr ? 1 : 0;
    case audioMasterGetVendorVersion: return kVendorVersion;
    case audioMasterCanDo: return AnswerCanDo(static_cast<const char*>(inCall.mPointer));
    case audioMasterGetLanguage: return kVstLangEnglish;
    case audioMasterGetDirectory: return reinterpret_cast<VstIntPtr>(inFacts.mDirectory);
    default: return std::nullopt;
    }
}
