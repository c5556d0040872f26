#pragma once
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/**
 * The way around a plug-in that cannot bypass itself: the main input, as late as the plug-in's output, fades
 * in over 10 ms while what the plug-in makes fades out, and back. The plug-in runs on.
 *
 * The line that makes the input late is there once the bypass was on, and is filled from there on; until it
 * is, what the plug-in makes is heard.
 *
 * Threads: `Configure` while nothing renders; `SetLatency`, `Switch` and `Beat` on the main thread; the rest
 * on the render thread, where nothing is allocated, freed or waited for.
 */
class CBypass
{
public:
    static constexpr double kFadeSeconds = 0.010;
    static constexpr std::int32_t kMaxFrames = 1024; // of one part of a block

    CBypass() = default;
    CBypass(const CBypass&) = delete;
    CBypass& operator=(const CBypass&) = delete;
    ~CBypass();

    /** Off, and without a latency. @param inSampleRate Hz. @param inInputs channels of the main input, as the
     * next of the main output. */
    void Configure(double inSampleRate, std::int32_t inInputs, std::int32_t inOutputs);
    /** @param inSamples at least 0: what the host was told. */
    void SetLatency(std::int64_t inSamples);
    void Switch(bool inIsOn);
    /** Frees what the render thread has laid aside. */
    void TimerBeat();

    /** Whether there is anything to do: the bypass was on. */
    bool IsUsed() const noexcept { return mIsUsed.load(std::memory_order_relaxed); }
    /** Keeps the input of a part of a block, before the plug-in may write over it. */
    void Take(const float* const* inInputs, std::int32_t inFirst, std::int32_t inFrames) noexcept;
    /** Fades what the plug-in made of the same part. @param inChannels of all outputs, the main one first. */
    void Mix(float* const* ioOutputs, std::int32_t inChannels, std::int32_t inFirst) noexcept;

private:
    /** Input that is so many samples late; each channel a ring. */
    struct SLine
    {
        SLine(std::int64_t inLatency, std::int32_t inChannels);

        std::int64_t mLatency;
        std::size_t mSize;                      // of a ring
        std::vector<std::vector<float>> mRings; // by channel
        std::size_t mNext = 0;                  // where the next part is written
        std::int64_t mTaken = 0;                // samples before the last part
    };

    void OfferLine();
    void ChangeLine() noexcept;
    /** The share that the input is to have: 0 or 1. */
    float Target() const noexcept;
    /** Of an output channel, as a share of the late input's; silent without one. */
    void MixChannel(float* ioOutput, const std::vector<float>* inRing, float inTarget) const noexcept;

    std::int32_t mInputs = 0;
    std::int32_t mOutputs = 0;
    float mStep = 1.0F;        // of the fade, per sample
    std::int64_t mLatency = 0; // main thread
    // The main thread writes these two, the render thread reads them; nothing else hangs on them, since what
    // is played comes with mOffered.
    std::atomic<bool> mIsUsed{false};
    std::atomic<bool> mIsOn{false};
    // The main thread makes a line and puts it here (release), the render thread takes it (acquire).
    std::atomic<SLine*> mOffered{nullptr};
    // The other way round: the render thread lays it aside (release), the main thread frees it (acquire).
    std::atomic<SLine*> mRetired{nullptr};
    std::unique_ptr<SLine> mLine; // render thread
    std::size_t mPart = 0;        // frames that were taken last; render thread
    float mDry = 0.0F;            // share of the input in the output; render thread
};
