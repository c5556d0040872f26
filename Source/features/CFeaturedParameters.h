#pragma once
#include "Source/AaxAdapter_Parameters.h"
#include "Source/features/CBypass.h"
#include "Source/features/CGestures.h"
#include "Source/features/CMidiOutput.h"
#include "Source/features/CPrograms.h"
#include "Source/features/CStems.h"
#include "Source/features/CSysexInput.h"
#include "Source/features/CTransportTime.h"
#include "Source/features/CValueTexts.h"
#include "Source/features/PixelSize.h"
#include "Source/plugins/IHostCallAnswers.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <thread>

/**
 * An instance with the features of its product (`kProductFeatures`). Each feature's work stands in a file of
 * its own; here is where it comes in.
 *
 * Threads: as of the base. What the plug-in asks of its host on other threads is noted, and done on the main
 * thread's next beat.
 */
class CFeaturedParameters final : public AaxAdapter_Parameters, public IHostCallAnswers
{
public:
    static AAX_IEffectParameters* Create();

    CFeaturedParameters();
    ~CFeaturedParameters() override;

    void RenderAudio(AAX_SInstrumentRenderInfo* ioInfo) override;
    /** Also gives idle time, and tells the host of a changed latency or name. */
    AAX_Result TimerWakeup() override;
    /** Also keeps the value, so that the module tells it, and counts the change. */
    AAX_Result UpdateParameterNormalizedValue(AAX_CParamID inId, double inValue,
                                              AAX_EUpdateSource inSource) override;
    /** The plug-in's own text of the value that it has, and of others that were asked for while it had them.
     * At most that many bytes. */
    AAX_Result GetParameterStringFromValue(AAX_CParamID inId, double inValue, AAX_IString* outText,
                                           std::int32_t inMaxLength) const override;
    AAX_Result GetParameterValueString(AAX_CParamID inId, AAX_IString* outText,
                                       std::int32_t inMaxLength) const override;
    AAX_Result GetParameterValueFromString(AAX_CParamID inId, double* outValue,
                                           const AAX_IString& inText) const override;
    /** A program that the chunk does not hold counts as equal. */
    AAX_Result CompareActiveChunk(const AAX_SPlugInChunk* inChunk, AAX_CBoolean* outIsEqual) const override;
    AAX_Result SetChunk(AAX_CTypeID inId, const AAX_SPlugInChunk* inChunk) override;
    void UpdateParameters() override;

    std::optional<VstIntPtr> AnswerCall(const SHostCall& inCall) override;

    /** The size that the plug-in asked for last on another thread than the main one; each once. Main thread.
     */
    std::optional<SPixelSize> TakeRequestedSize() noexcept;
    /** The plug-in's editor is closed, and so are the gestures in it. */
    void EndGestures() { mGestures.EndAll(); }

private:
    void PluginLoaded() override;
    void PluginStarted(SDescribedShape& ioShape) override;
    void PluginEnds() override;
    bool IsAutomatable(long inIndex) const override;
    void DescribeParameter(long inIndex, AAX_IParameter& ioParameter) const override;
    void AddLastParameters() override;
    AAX_IAutomationDelegate& AutomationFor(AAX_IAutomationDelegate& inHost) override;
    void ParametersEnd() override;
    std::int64_t PluginLatency() const override;
    void RestorePlugin(std::span<const char> inData, std::int32_t inProgram) override;
    void RestoreControls(AAX_CChunkDataParser& ioSaved) override;
    void MirrorPluginValues() const override;

    void RenderBlock(AAX_SInstrumentRenderInfo& ioInfo);
    void RenderParts(AAX_SInstrumentRenderInfo& ioInfo);
    /** A part of a block, with the bypass around the plug-in. */
    void RenderAround(AAX_SInstrumentRenderInfo& ioInfo, SFrames inFrames);
    bool IsRendering() const noexcept;
    void GiveIdleTime();
    void SwitchBypass(bool inIsOn);
    void FollowPrograms();
    void ChooseProgram(double inValue);
    void GiveChosenProgram();
    void TellNewNames();
    void TellNewName(long inIndex);
    void NoteKnownValues();
    VstIntPtr TakeEvents(const VstEvents* inEvents) noexcept;
    VstIntPtr ResizeEditor(SPixelSize inSize) noexcept;
    /** Whether the plug-in has the value that the host knows as this one. */
    bool IsPluginValue(AAX_CParamID inId, long inIndex, float inValue) const;
    /** @return nothing where the plug-in has no text for it, or is asked too early or late. */
    std::optional<std::string> ValueText(AAX_CParamID inId, long inIndex, double inValue) const;
    /** Of one of the plug-in's parameters. */
    AAX_Result GiveValueText(AAX_CParamID inId, long inIndex, double inValue, AAX_IString* outText,
                             std::int32_t inMaxLength) const;

    CTransportTime mTransportTime;
    CMidiOutput mMidiOutput;
    CSysexInput mSysexInput;
    std::string mDirectory; // of the plug-in file
    mutable CValueTexts mValueTexts;
    CGestures mGestures;
    CStems mStems;
    CPrograms mPrograms;
    CBypass mBypass;
    // Frames of a block; larger ones are rendered in parts. None are whole once the bypass was on. The main
    // thread writes, the render thread reads; nothing else hangs on it.
    std::atomic<std::uint32_t> mMostAtOnce{kBlockSizeFrames};
    bool mBypassesItself = false;    // the plug-in does, when it is told to
    bool mAnswersAutomation = false; // the plug-in says which parameters can be automated
    // The thread that is in the render call; no thread between two. Written there, read by the plug-in's
    // calls.
    std::atomic<std::thread::id> mRenderThread{};
    // The plug-in's calls store these three (release), the main thread takes them (acquire): what the plug-in
    // wrote before its call, it finds when it is called for it.
    std::atomic<bool> mWantsIdle{false};
    std::atomic<bool> mHasNewNames{false};                // it may have renamed parameters
    std::atomic<SPixelSize> mRequestedSize{SPixelSize{}}; // not sensible: none
    static_assert(decltype(mRequestedSize)::is_always_lock_free);
};
