#pragma once
#include "Source/AaxAdapter_Parameters.h"
#include "Source/features/CMidiOutput.h"
#include "Source/features/CSysexInput.h"
#include "Source/features/CTransportTime.h"
#include "Source/plugins/IHostCallAnswers.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <thread>

/** A size in pixels. */
struct SPixelSize
{
    std::int32_t mWidth = 0;
    std::int32_t mHeight = 0;
    bool operator==(const SPixelSize&) const = default;
    /** Whether an editor can have it. */
    bool IsSensible() const noexcept
    {
        return mWidth >= 1 && mHeight >= 1 && mWidth <= kMost && mHeight <= kMost;
    }
    static constexpr std::int32_t kMost = 16384;
};

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
    /** Also gives idle time, and tells the host of a changed latency. */
    AAX_Result TimerWakeup() override;
    AAX_Result SetChunk(AAX_CTypeID inId, const AAX_SPlugInChunk* inChunk) override;

    std::optional<VstIntPtr> AnswerCall(const SHostCall& inCall) override;

    /** The size that the plug-in asked for last on another thread than the main one; each once. Main thread.
     */
    std::optional<SPixelSize> TakeRequestedSize() noexcept;
    const CMidiOutput& MidiOutput() const noexcept { return mMidiOutput; }

private:
    void PluginStarted() override;
    void PluginEnds() override;
    std::int64_t PluginLatency() const override;
    void RestorePlugin(std::span<const char> inData, std::int32_t inProgram) override;

    void RenderBlock(AAX_SInstrumentRenderInfo& ioInfo);
    void RenderParts(AAX_SInstrumentRenderInfo& ioInfo);
    bool IsRendering() const noexcept;
    void GiveIdleTime();
    VstIntPtr TakeEvents(const VstEvents* inEvents) noexcept;
    VstIntPtr ResizeEditor(SPixelSize inSize) noexcept;

    CTransportTime mTransportTime;
    CMidiOutput mMidiOutput;
    CSysexInput mSysexInput;
    std::string mDirectory; // of the plug-in file
    // The thread that is in the render call; no thread between two. Written there, read by the plug-in's
    // calls.
    std::atomic<std::thread::id> mRenderThread{};
    std::atomic<bool> mWantsIdle{false};          // the plug-in's calls write, the main thread takes
    std::atomic<std::uint64_t> mRequestedSize{0}; // as above: width and height; 0: none
};
