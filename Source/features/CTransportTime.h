#pragma once
#include "Interfaces/VST2/AEffect.h"

#include <cstdint>

class AAX_ITransport;

/**
 * The whole time record of a block, made of what the host's transport answers. A field whose call fails, or
 * answers what makes no sense, has its flag clear.
 *
 * Threads: the render thread, but for `SetSampleRate` before it renders.
 */
class CTransportTime
{
public:
    void SetSampleRate(double inHertz) noexcept;
    /**
     * What differs from the block before is told by the record itself, which nobody else writes.
     *
     * @param inTransport may be null: nothing is valid then.
     * @param inClock     samples that the host has counted since it runs; may be null.
     * @param inFrames    of the block.
     */
    void Write(const AAX_ITransport* inTransport, const std::int64_t* inClock, std::int32_t inFrames,
               VstTimeInfo& ioTime) noexcept;
    /** The next part of a block, so many frames further on. */
    void Advance(std::int32_t inFrames, VstTimeInfo& ioTime) const noexcept;

private:
    struct SMeter
    {
        std::int32_t mNumerator;
        std::int32_t mDenominator;
    };
    /** In ticks. */
    struct SLoop
    {
        std::int64_t mStart;
        std::int64_t mEnd;
        bool operator==(const SLoop&) const = default;
    };
    /** As the host counts them: bars and beats from 1. */
    struct SBeat
    {
        std::int32_t mBar;
        std::int32_t mBeat;
        std::int64_t mDisplayTicks; // since the beat began
    };
    /** A bar that was looked up. Quarter notes from the song's start; empty at first. */
    struct SBar
    {
        std::int32_t mNumber = 0;
        double mStart = 0.0;
        double mEnd = 0.0;
    };

    void AskTicksPerQuarter(const AAX_ITransport& inTransport) noexcept;
    // Each takes something new. @return the flags that it gives; none where it makes no sense.
    static std::int32_t TakeTempo(double inTempo, VstTimeInfo& ioTime) noexcept;
    std::int32_t TakeMeter(const SMeter& inMeter, VstTimeInfo& ioTime) noexcept;
    std::int32_t TakeLoop(const SLoop& inLoop, VstTimeInfo& ioTime) noexcept;
    std::int32_t TakeBar(const SBeat& inBeat, std::int32_t inFlags, VstTimeInfo& ioTime) noexcept;
    double StartOfBar(double inQuarters, const SBeat& inBeat, std::int32_t inDenominator) noexcept;

    double mMinutesPerFrame = 0.0;  // 0 without a rate
    double mNanosPerFrame = 0.0;    // 0 without a rate
    double mTicksPerQuarter = 0.0;  // 0: not asked yet
    std::int64_t mNextLocation = 0; // samples: where the next block is when nothing jumps
    std::int64_t mLastTick = 0;
    SLoop mLoop{0, 0};
    SBar mBar;
    bool mCountsTransportTicks = false; // the host, in its displays
};
