#pragma once
#include "Interfaces/VST2/HostAnswers.h"

#include <array>
#include <optional>
#include <string_view>

// What a host that answers questions about itself tells a plug-in: a module with the feature HOST_ANSWERS,
// and the plug-in called directly that such a module is compared with. Other hosts of this project answer 0
// (HostAnswers.h).

/** The calls by which a plug-in asks about its host: those that AnswerQuestion has a row for. */
inline constexpr std::int32_t kHostQuestions[] = {audioMasterGetSampleRate,
                                                  audioMasterGetBlockSize,
                                                  audioMasterGetCurrentProcessLevel,
                                                  audioMasterGetAutomationState,
                                                  audioMasterGetVendorString,
                                                  audioMasterGetVendorVersion,
                                                  audioMasterCanDo,
                                                  audioMasterGetLanguage,
                                                  audioMasterGetDirectory};

/** What a host says of itself and of one of its instances. */
struct SHostFacts
{
    float mSampleRate = 0.0F;    // Hz
    std::int32_t mBlockSize = 0; // frames
    bool mIsRendering = false;   // whether the render call is what asks
    char* mDirectory = nullptr;  // of the plug-in file; plug-ins keep its address
    bool mTakesMidi = false;     // what the plug-in sends
    bool mResizesEditor = false; // when the plug-in asks for it
    bool mGivesIdleTime = false; // as above
};

/** Something that a plug-in asks whether its host can do. */
struct SHostAbility
{
    std::string_view mText;
    bool mIsThere;
};

/** Each that has a name. */
constexpr auto HostAbilities(const SHostFacts& inFacts) noexcept
{
    return std::to_array<SHostAbility>({
        {"sendVstEvents", true},
        {"sendVstMidiEvent", true},
        {"sendVstTimeInfo", true},
        {"receiveVstEvents", inFacts.mTakesMidi},
        {"receiveVstMidiEvent", inFacts.mTakesMidi},
        {"reportConnectionChanges", false},
        {"acceptIOChanges", false}, // of the latency only
        {"sizeWindow", inFacts.mResizesEditor},
        {"startStopProcess", true},
        {"supplyIdle", inFacts.mGivesIdleTime},
        {"sendVstMidiEventFlagIsRealtime", false},
        {"offline", false},
        {"openFileSelector", false},
        {"closeFileSelector", false},
        {"editFile", false},
        {"shellCategory", false},
    });
}

/** @return 1 for what the host does, -1 for what it never does, 0 for an unknown text or none. */
inline VstIntPtr AnswerCanDo(const char* inText, const SHostFacts& inFacts) noexcept
{
    if (inText == nullptr)
        return 0;
    for (const SHostAbility& ability : HostAbilities(inFacts))
        if (ability.mText == inText)
            return ability.mIsThere ? 1 : -1;
    return 0;
}

/** 0 where the host's number is no rate: what becomes of one that is too large differs between processors. */
inline VstIntPtr WholeRate(float inHertz) noexcept
{
    constexpr float highest = 1e9F;
    return inHertz > 0.0F && inHertz <= highest ? static_cast<VstIntPtr>(inHertz) : 0;
}

/**
 * Answers what a plug-in asks about its host; one row a question.
 *
 * @return nothing for a call that asks something else, and for one of nobody that is known: a plug-in's entry
 *         function has no instance to ask for. Threads: any. Takes no lock, allocates nothing.
 */
inline std::optional<VstIntPtr> AnswerQuestion(const SHostCall& inCall, const SHostFacts& inFacts) noexcept
{
    if (inCall.mCaller != EHostCaller::kLoaded)
        return std::nullopt;
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
    case audioMasterGetVendorVersion: return 1000;
    case audioMasterCanDo: return AnswerCanDo(static_cast<const char*>(inCall.mPointer), inFacts);
    case audioMasterGetLanguage: return kVstLangEnglish;
    case audioMasterGetDirectory: return reinterpret_cast<VstIntPtr>(inFacts.mDirectory);
    default: return std::nullopt;
    }
}
