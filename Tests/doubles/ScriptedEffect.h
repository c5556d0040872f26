#pragma once
#include "Interfaces/VST2/AEffect.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

class ScriptedEffect;

/** One dispatcher call as a hook sees it. */
struct SDispatch
{
    std::int32_t mIndex = 0;
    VstIntPtr mValue = 0;
    void* mPointer = nullptr;
    float mOpt = 0.0F;
};

struct SScriptedPin
{
    std::string mLabel;
    std::int32_t mFlags = 0;
};

/** How one instance looks to its host, where instances differ. */
struct SPluginShape
{
    std::int32_t mNumInputs = 0;
    std::int32_t mNumOutputs = 0;
    std::vector<SScriptedPin> mInputPins;
    std::vector<SScriptedPin> mOutputPins;
    VstIntPtr mCanDo = 0; // answer to every effCanDo
};

/** What a scripted plug-in is and does, the same for all its instances; a test may set it at any time. */
struct SPluginSettings
{
    using Hook = std::function<void(ScriptedEffect&, const SDispatch&)>;

    static constexpr std::int32_t kEntry = -1; // in place of an opcode among the faults

    SPluginSettings();

    AEffect mShape{}; // counts, flags and identity of new instances
    std::map<std::pair<std::int32_t, std::int32_t>, std::string>
        mTexts;                                 // by opcode and index; else nothing is written
    std::map<std::int32_t, VstIntPtr> mResults; // by opcode; go before what would be answered
    std::vector<SScriptedPin> mInputPins;       // pins beyond the last answer 0
    std::vector<SScriptedPin> mOutputPins;
    // Each new instance takes the first and keeps it, the last one stays for all that follow; where there is
    // none, the pins above and the counts of `shape` hold.
    std::vector<SPluginShape> mShapes;
    std::vector<float> mParameters; // of new instances
    std::int32_t mSteps = 0;   // a parameter that is set is rounded to one of so many steps; 0: not at all
    bool mReportsSets = false; // and is automated before setParameter comes back
    std::map<std::int32_t, std::vector<std::int32_t>>
        mCoupled; // those that take the same value, and are automated, when the key is set
    std::vector<std::uint8_t> mBankChunk;
    std::vector<std::uint8_t> mProgramChunk;
    std::vector<std::string> mMidiPrograms;
    std::int32_t mMidiParent = -1; // the category of each of them
    std::vector<std::string> mMidiCategories;
    ERect mEditorSize{};
    bool mGivesEditorSize = true;

    std::map<std::int32_t, Hook> mHooks; // run after the call is logged and before it is answered; may throw
    std::function<void(audioMasterCallback)> mOnEntry; // may throw
    std::function<void(AEffect&)> mOnCreate;           // last touch to an instance's record
    std::function<void(ScriptedEffect&, float**, float**, std::int32_t)>
        mOnProcess;                 // else inputs are copied to outputs
    std::set<std::int32_t> mFaults; // opcodes that throw an exception type of the plug-in's own
    bool mEntryReturnsNull = false;
    bool mSharesOneEffect = false; // every entry call gives the first instance
};

/**
 * The settings of a scripted plug-in and what came of them.
 *
 * The log has one line a call: the opcode's name and, where it has one, its telling argument
 * ("effSetBlockSize 1024"), besides "setParameter 3 0.5" and "processReplacing 512". getParameter is not
 * logged.
 */
struct SPluginScript : SPluginSettings
{
    std::vector<std::unique_ptr<ScriptedEffect>> mInstances;
    std::vector<std::vector<VstMidiEvent>>
        mEvents;               // of each effProcessEvents, as many as its record says, at most 300
    long mOutOfRangeCalls = 0; // parameter calls with an index that does not exist

    /** Back to the state of a freshly loaded file. */
    void Reset();
    void Log(const std::string& inLine);
    std::vector<std::string> TakeLog(); // and empties it
    /** What the plug-in's entry does. */
    AEffect* Enter(audioMasterCallback inHost);

private:
    std::mutex mLogMutex;
    std::vector<std::string> mLog;
};

/** One instance of a scripted plug-in; frees itself on effClose. */
class ScriptedEffect
{
public:
    ScriptedEffect(SPluginScript& inScript, audioMasterCallback inHost);
    ScriptedEffect(const ScriptedEffect&) = delete;
    ScriptedEffect& operator=(const ScriptedEffect&) = delete;
    ~ScriptedEffect() = default;

    AEffect& Effect() { return mEffect; }
    std::vector<float>& Parameters() { return mParameters; }
    VstIntPtr CallHost(std::int32_t inOpcode, std::int32_t inIndex = 0, void* inPointer = nullptr,
                       float inOpt = 0.0F, VstIntPtr inValue = 0);

private:
    static VstIntPtr Dispatch(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                              VstIntPtr inValue, void* inPointer, float inOpt);
    static void SetParameter(AEffect* inEffect, std::int32_t inIndex, float inValue);
    static float GetParameter(AEffect* inEffect, std::int32_t inIndex);
    static void Process(AEffect* inEffect, float** inInputs, float** inOutputs, std::int32_t inFrames);

    VstIntPtr Answer(std::int32_t inOpcode, const SDispatch& inCall);
    VstIntPtr AnswerPin(const std::vector<SScriptedPin>& inPins, const SDispatch& inCall) const;
    VstIntPtr AnswerMidi(std::int32_t inOpcode, const SDispatch& inCall) const;
    void RecordEvents(const VstEvents& inEvents);
    /** Counts a call about a parameter that there is not, by the record or by the values. */
    bool HasParameter(std::int32_t inIndex);
    void TakeValue(std::int32_t inIndex, float inValue);

    SPluginScript& mScript;
    audioMasterCallback mHost;
    AEffect mEffect{};
    std::optional<SPluginShape> mShape;
    std::vector<float> mParameters;
    std::vector<std::uint8_t> mBankChunk;
    std::vector<std::uint8_t> mProgramChunk;
    std::int32_t mProgram = 0;
};

/** The one function that every scripted plug-in exports beside its entry. */
extern "C" SPluginScript* GetPluginScript();
