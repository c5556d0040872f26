#pragma once
#include "Examples/common/CProgramBank.h"
#include "Examples/common/IEditedEffect.h"
#include "Examples/common/IEffectEditor.h"
#include "Examples/common/SParameterInfo.h"
#include "Interfaces/VST2/AEffect.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

/** Marks the entry function, the one symbol that a plug-in shows; EXAMPLE_ENTRY is the name it has in the
 * build. */
#define EXAMPLE_EXPORT extern "C" __attribute__((visibility("default")))

/** A stereo port: two channels, each described by a pin. */
struct SStereoPort
{
    const char* mLabel;
    const char* mShortLabel; // at most 7 characters
};

/** What a plug-in is; the tables it refers to are constants. */
struct SEffectInfo
{
    std::int32_t mUniqueId;
    std::int32_t mVersion;
    const char* mName;
    const char* mVendor;
    std::span<const SParameterInfo> mParameters;
    std::span<const SFactoryProgram> mPrograms; // at least one
    std::span<const SStereoPort> mInputs;
    std::span<const SStereoPort> mOutputs;
    std::int32_t mLatency; // samples
    bool mIsSynth;         // and as such takes MIDI
    bool mKeepsChunk;
};

/**
 * Base of the example plug-ins: the record that the host holds, the dispatcher, parameters, programs, state
 * and pins. A plug-in adds its sound, and an editor where it has one.
 *
 * Lives from the entry function to effClose, which deletes it. It calls its host only to tell it of edits,
 * and works with any host. Threads: Render and Receive belong to the host's render thread, parameters to any,
 * the rest to the main thread.
 */
class CVst2Effect : private IEditedEffect
{
public:
    /** @param inHost hears of edits; null: nobody does. */
    explicit CVst2Effect(const SEffectInfo& inInfo, audioMasterCallback inHost = nullptr);
    CVst2Effect(const CVst2Effect&) = delete;
    CVst2Effect& operator=(const CVst2Effect&) = delete;
    virtual ~CVst2Effect() = default;

    /** @return what the entry function returns. */
    AEffect* Effect() noexcept { return &mEffect; }

protected:
    /** Sizes everything for a sample rate in Hz; never called while audio runs. May throw std::bad_alloc. */
    virtual void Prepare(double inSampleRate) = 0;
    /** Silences everything and takes up the parameters as they are. */
    virtual void Reset() noexcept = 0;
    /** One MIDI message of the next block. */
    virtual void Receive(const VstMidiEvent& inEvent) noexcept;
    /** Replaces the outputs; inputs and outputs may be the same memory. */
    virtual void Render(float* const* inInputs, float* const* inOutputs, std::int32_t inFrames) noexcept = 0;

    /** @return a parameter's value in its unit. */
    double Plain(std::size_t inParameter) const noexcept;

    IEditedEffect& Edited() noexcept { return *this; }
    /** Only while the plug-in is being made: hosts look for an editor once. */
    void SetEditor(std::unique_ptr<IEffectEditor> inEditor);

private:
    std::span<const SParameterInfo> EditedParameters() const noexcept override { return mInfo.mParameters; }
    float EditedValue(std::size_t inParameter) const noexcept override { return mBank.Value(inParameter); }
    void BeginEdit(std::size_t inParameter) override;
    void PerformEdit(std::size_t inParameter, float inValue) override;
    void EndEdit(std::size_t inParameter) override;
    void TellHost(std::int32_t inOpcode, std::size_t inParameter, float inValue);

    static VstIntPtr Dispatch(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                              VstIntPtr inValue, void* inPointer, float inOpt) noexcept;
    static void SetParameter(AEffect* inEffect, std::int32_t inIndex, float inValue) noexcept;
    static float GetParameter(AEffect* inEffect, std::int32_t inIndex) noexcept;
    static void ProcessReplacing(AEffect* inEffect, float** inInputs, float** inOutputs,
                                 std::int32_t inFrames) noexcept;

    VstIntPtr Answer(std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue, void* inPointer,
                     float inOpt);
    VstIntPtr AnswerParameter(std::int32_t inOpcode, std::int32_t inIndex, void* outText) const;
    VstIntPtr AnswerProgram(std::int32_t inOpcode, std::int32_t inIndex, VstIntPtr inValue, void* ioText);
    VstIntPtr AnswerEditor(std::int32_t inOpcode, void* inPointer);
    VstIntPtr AnswerCanDo(const char* inQuestion) const;
    VstIntPtr GiveChunk(std::int32_t inScope, void** outChunk);
    VstIntPtr TakeChunk(std::int32_t inScope, VstIntPtr inSize, const void* inChunk);
    void SetSampleRate(float inSampleRate);
    void ReceiveAll(const VstEvents* inEvents) noexcept;

    const SEffectInfo mInfo;
    AEffect mEffect{};
    CProgramBank mBank;
    std::vector<std::byte> mChunk; // what the host was given last
    const audioMasterCallback mHost;
    ERect mEditorRectangle{}; // hosts are given its address
    std::unique_ptr<IEffectEditor> mEditor;
};
