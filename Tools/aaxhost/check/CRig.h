#pragma once
#include "Tools/aaxhost/check/CCheckContext.h"
#include "Tools/aaxhost/player/SRenderCall.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/** A sample of a channel at a frame since the start. */
using SignalSource = std::function<float(std::int64_t frame, std::size_t channel)>;

SignalSource Silence();
SignalSource Constant(float inValue);
/** Noise from -inPeak to inPeak, the same in every run. */
SignalSource Noise(float inPeak);
SignalSource Sine(double inHertz, float inPeak, double inRate);
/** One sample of inPeak at that frame, zeros otherwise. */
SignalSource Impulse(std::int64_t inFrame, float inPeak);

/**
 * Fills the unused part of this thread's stack with bytes that are no numbers as samples, so that what the
 * next call reads before it writes it shows in each run, whoever the caller is.
 */
void SpoilStack() noexcept;

/** Beats of the timer that a host gives an instance. */
inline constexpr double kTimersPerSecond = 30.0;

/** Material that makes most plug-ins sound: noise for an effect, notes where MIDI is taken. */
template <class Rig>
void PlayOn(Rig& ioRig, double inSeconds, std::int32_t inBlock)
{
    ioRig.Feed(Noise(0.25F));
    const std::uint8_t notes[] = {48, 60, 67};
    for (const std::uint8_t note : notes)
        ioRig.Send(0, 0x90, note, 100);
    ioRig.RenderSeconds(0.6 * inSeconds, inBlock);
    for (const std::uint8_t note : notes)
        ioRig.Send(0, 0x80, note, 64);
    ioRig.RenderSeconds(0.4 * inSeconds, inBlock);
}

/**
 * An instance on the bench: feeds it block after block, and keeps an eye on what comes out.
 *
 * The stack is spoiled before each block. All buffers have room for 4,096 frames whatever the block, and
 * marked words before, after and behind the
 * frames of the block.
 *
 * Threads: `RenderBlock` on one thread at a time; everything else on the main thread.
 */
class CRig
{
public:
    explicit CRig(CCheckContext& inContext, double inRate = kCheckRate);
    CRig(const CRig&) = delete;
    CRig& operator=(const CRig&) = delete;

    CInstance& Instance() noexcept { return *mInstance; }
    SRenderCall& Call() noexcept { return *mCall; }
    STransportState& Transport() noexcept { return mInstance->Host().Transport().State(); }
    /** The packets of the next block; null when the module takes no MIDI. */
    CHostMidiNode* Midi() noexcept { return mNode; }
    /** Does nothing without MIDI. */
    void Send(std::uint32_t inOffset, std::uint8_t inStatus, std::uint8_t inFirst, std::uint8_t inSecond);
    double Rate() const noexcept { return mRate; }
    std::int64_t Position() const noexcept { return mPosition; } // frames rendered
    std::size_t Outputs() const noexcept { return mOutputs.size(); }
    std::size_t Inputs() const noexcept { return mInputs.size(); }

    void Feed(SignalSource inSource) { mSource = std::move(inSource); }
    /** From now on every output is kept, channel-major. */
    void Record() { mRecords = true; }
    const std::vector<std::vector<float>>& Recording() const noexcept { return mRecording; }
    void ClearRecording();
    /** Output channel i is rendered into the memory of input channel i, as hosts do that work in place. */
    void RenderInPlace();
    /** All outputs but the first two go into one buffer, as a host may give for stems that nobody uses. */
    void ShareUnusedOutputs();

    /** Outputs hold marks instead of zeros before each block. */
    void DirtyOutputs() { mDirty = true; }
    /** The first output that kept its marks in some block, in words; empty when all were written. */
    const std::string& Unwritten() const noexcept { return mUnwritten; }

    /** The play position moves on when the transport plays. MIDI packets are cleared afterwards. */
    void RenderBlock(std::int32_t inFrames);
    /** As RenderBlock, with what a host does between two blocks on the main thread. */
    void Render(std::int32_t inFrames);
    void RenderFrames(std::int64_t inFrames, std::int32_t inBlock);
    void RenderSeconds(double inSeconds, std::int32_t inBlock = 512);
    void Play(double inSeconds, std::int32_t inBlock = 512) { PlayOn(*this, inSeconds, inBlock); }

    /** The highest absolute finite sample since the last call. */
    float TakePeak() noexcept;
    /** The first sample that was infinite or not a number, and how many there were, in words; empty when
     * there was none. */
    std::string NonFinite() const;
    void ForgetNonFinite() { mBroken = {}; }
    /** The first write outside the frames of a block, in words; empty when there was none. */
    const std::string& Overrun() const noexcept { return mOverrun; }
    /** The first block whose inputs were written to, in words; empty when there was none. */
    const std::string& WrittenInput() const noexcept { return mWrittenInput; }
    /** Ends the check as failed when a sample was not finite. @param inWhen "at 96000 Hz", "with noise". */
    void ExpectFinite(const std::string& inWhen) const;

private:
    struct SBuffer
    {
        explicit SBuffer();
        float* Frames() noexcept { return mMemory.data() + kMargin; }
        void MarkAround(std::int32_t inFrames) noexcept;
        /** Frames from the block's start of the first changed word; kIntact when none was. */
        std::int32_t FirstChange(std::int32_t inFrames) const noexcept;

        static constexpr std::int32_t kMargin = 256; // frames on either side
        static constexpr std::int32_t kIntact = INT32_MIN;
        std::vector<float> mMemory;
    };

    /** Samples that were infinite or not a number. */
    struct SBroken
    {
        std::string mFirst;
        std::int64_t mSamples = 0;
        std::int64_t mAll = 0; // that were looked at
    };

    void FillInputs(std::int32_t inFrames);
    void LookAtInputs(std::int32_t inFrames);
    void LookAtOutputs(std::int32_t inFrames);
    void LookAtSample(float inSample, std::size_t inChannel, std::int64_t inFrame);

    double mRate;
    std::unique_ptr<CInstance> mInstance;
    std::unique_ptr<SRenderCall> mCall;
    CHostMidiNode* mNode = nullptr;
    std::vector<SBuffer> mInputs;
    std::vector<SBuffer> mOutputs;
    std::vector<std::vector<float>> mRecording;
    std::vector<std::vector<float>> mInputCopies; // channel-major
    SignalSource mSource;
    std::int64_t mPosition = 0;
    std::int64_t mNextTimer = 0;
    float mPeak = 0.0F;
    bool mRecords = false;
    bool mInPlace = false;
    bool mDirty = false;
    std::string mWrittenInput;
    std::string mUnwritten;
    SBroken mBroken;
    std::string mOverrun;
};
