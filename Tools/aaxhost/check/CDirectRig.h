#pragma once
#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/direct/SServices.h"
#include "Tools/aaxhost/host/CHostTransport.h"
#include "Tools/aaxhost/player/CPostedMidi.h"
#include "Tools/aaxhost/window/CHostWindow.h"
#include "Tools/vst2driver/CDrivenPlugin.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

/** Those that the product's features promise. */
SServices ServicesOf(CCheckContext& ioContext);

/** What an instance of the module starts with, so that the plug-in called directly can as well. */
struct SStart
{
    std::size_t mInputs = 0; // channels that the host fills
    std::vector<double> mValues;
};
SStart StartOf(CCheckContext& ioContext);

/**
 * The module's plug-in called directly: gets what a `CRig` gives the module, block after block, and beats of
 * the timer as often. What the module does is compared with it.
 *
 * Threads: the main thread; the plug-in may call its host on any.
 */
class CDirectRig
{
public:
    /** Ends the check as skipped where the plug-in does not open by itself. */
    CDirectRig(CCheckContext& ioContext, const SServices& inServices, const SStart& inStart);
    CDirectRig(const CDirectRig&) = delete;
    CDirectRig& operator=(const CDirectRig&) = delete;

    CDrivenPlugin& Plugin() noexcept { return mPlugin; }
    STransportState& Transport() noexcept { return mTransport.State(); }
    /** Gives it those that differ from its own. */
    void SetValues(const std::vector<double>& inValues);

    void Feed(SignalSource inSource) { mSource = std::move(inSource); }
    /** With the next block; does nothing where the module takes no MIDI. */
    void Send(std::uint32_t inOffset, std::uint8_t inStatus, std::uint8_t inFirst, std::uint8_t inSecond);
    /** System exclusive, as one event ahead of the next block. */
    void SendExclusive(std::span<const std::uint8_t> inMessage);
    /** @param inFrames at most CDrivenPlugin::kMaxFrames. */
    void Render(std::int32_t inFrames);
    void RenderSeconds(double inSeconds, std::int32_t inBlock);
    void Play(double inSeconds, std::int32_t inBlock = 512) { PlayOn(*this, inSeconds, inBlock); }

    /** Every output since the start, channel-major. */
    const std::vector<std::vector<float>>& Recording() const noexcept { return mRecording; }
    /** What it sent since the start, as far as a MIDI file has a place for it, at the times at which the host
     * has to get it. */
    const std::vector<SMidiMessage>& Sent() const noexcept { return mSent; }
    /** The last size that its editor asked for; each once. */
    std::optional<SViewSize> TakeSizeWish();

private:
    std::optional<VstIntPtr> Answer(const SHostCall& inCall);
    VstIntPtr TakeEvents(const VstEvents& inEvents);
    VstIntPtr TakeSize(std::int32_t inWidth, VstIntPtr inHeight);
    void WriteTime();
    void WriteWholeTime(VstTimeInfo& outTime);
    void KeepSent(std::int32_t inFrames);
    void Beat();

    struct SSent
    {
        std::int32_t mFrame; // as the plug-in says it
        std::vector<std::uint8_t> mBytes;
    };

    const SServices mServices;
    const bool mTakesMidi; // the module does
    const std::size_t mInputs;
    std::string mFolder; // of the plug-in
    CHostTransport mTransport;
    SignalSource mSource;
    std::vector<SPluginEvent> mEvents; // of the next block
    std::vector<char> mDump;           // plug-ins read it as late as in the block
    VstMidiSysexEvent mDumpEvent{};
    VstEvents mDumpList{};
    std::vector<std::vector<float>> mRecording;
    std::vector<SMidiMessage> mSent;
    std::int64_t mPosition = 0; // frames rendered
    std::int64_t mNextTimer = 0;
    std::atomic<bool> mIsRendering = false;
    std::atomic<bool> mWantsIdle = false;
    std::mutex mReporting; // over what the plug-in says on any thread
    std::vector<SSent> mJustSent;
    std::optional<SViewSize> mSizeWish;
    CDrivenPlugin mPlugin; // last: its calls use the others
};
