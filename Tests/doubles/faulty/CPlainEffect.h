#pragma once
#include "Examples/common/CVst2Effect.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

/** How a plain effect is made, where that is not as usual. */
struct SPlainOptions
{
    std::size_t mParameters = 2; // at most 8
    bool mIsSynth = false;
    bool mEndsNotes = true;
};

/** One call of the dispatcher. */
struct SCall
{
    std::int32_t mOpcode;
    std::int32_t mIndex;
    VstIntPtr mValue;
    void* mPointer;
    float mOpt;
};

/** One call of processReplacing: two inputs, of an effect, and two outputs. */
struct SBlock
{
    float** mInputs;
    float** mOutputs;
    std::int32_t mFrames;
};

/** The parameters of a plain effect that have a meaning. */
enum EPlainParameter : std::int32_t
{
    kGain,
    kBalance
};

/**
 * A faultless small plug-in, a stereo gain with a balance, or a synthesizer of one sine: what each of the
 * plug-ins of this folder spoils in one place. A fault changes the record (Effect()) or puts a hook in front
 * of one of its calls, which passes on to the faultless call what it leaves as it is.
 *
 * Hooks are set while the plug-in is made, and run on the thread of their call.
 */
class CPlainEffect final : public CVst2Effect
{
public:
    explicit CPlainEffect(audioMasterCallback inHost, const SPlainOptions& inOptions = {});

    /** Faultless calls. */
    VstIntPtr Answer(const SCall& inCall);
    void Render(const SBlock& inBlock)
    {
        mPlain.processReplacing(Effect(), inBlock.mInputs, inBlock.mOutputs, inBlock.mFrames);
    }
    void Set(std::int32_t inIndex, float inValue) { mPlain.setParameter(Effect(), inIndex, inValue); }
    float Get(std::int32_t inIndex) { return mPlain.getParameter(Effect(), inIndex); }

    VstIntPtr CallHost(std::int32_t inOpcode, std::int32_t inIndex = 0, VstIntPtr inValue = 0,
                       void* inPointer = nullptr);
    /** The host's time; null where it has none. */
    const VstTimeInfo* Time() { return reinterpret_cast<const VstTimeInfo*>(CallHost(audioMasterGetTime)); }
    /** Sends the host a message. Any thread. */
    void SendMidi(const std::array<std::uint8_t, 3>& inMessage, std::int32_t inFrame = 0);
    /** Begins an edit of a parameter, reports it, and ends it: what a person's hand at a knob does. */
    void Turn(std::int32_t inIndex);
    /** Has something done ahead of each call of an opcode. */
    void Before(std::int32_t inOpcode, std::function<void()> inAction);
    using CVst2Effect::Edited;
    using CVst2Effect::SetEditor;

    std::function<VstIntPtr(const SCall&)> mOnCall; // all but effClose
    std::function<void(const SBlock&)> mOnBlock;
    std::function<void(std::int32_t, float)> mOnSet;
    std::function<void()> mOnClose; // before the faultless one

private:
    static CPlainEffect& Self(AEffect* inEffect) noexcept;

    void Prepare(double inSampleRate) override { mSampleRate = inSampleRate; }
    void Reset() noexcept override;
    void Receive(const VstMidiEvent& inEvent) noexcept override;
    void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept override;

    audioMasterCallback mHost;
    AEffect mPlain; // the record without its faults
    const SPlainOptions mOptions;
    double mSampleRate = 44100.0; // Hz
    double mPhase = 0.0;          // 0 to 1
    int mNote = -1;               // the one that sounds
};

/** @return a new plug-in, which the host ends with effClose. */
CPlainEffect& MakePlain(audioMasterCallback inHost, const SPlainOptions& inOptions = {});
/** One that a fault has spoiled. */
AEffect* MakeFaulty(audioMasterCallback inHost, void (*inFault)(CPlainEffect&));
