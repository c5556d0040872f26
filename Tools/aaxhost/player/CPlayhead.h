#pragma once
#include "Tools/aaxhost/host/CTimeline.h"
#include "Tools/support/COutcome.h"

#include <cstdint>
#include <optional>
#include <vector>

/** From this frame of the file on the timeline is played from that frame of its own. */
struct SPassage
{
    std::int64_t mFileFrame = 0;
    std::int64_t mPosition = 0;
    bool operator==(const SPassage&) const = default;
};

/** A part of the timeline that is played again and again, in quarter notes from its start. */
struct SLoop
{
    double mBegin = 0.0;
    double mEnd = 0.0;
};

/** At that time of the file the transport is moved. */
struct SJump
{
    double mAtSeconds = 0.0;
    double mToSeconds = 0.0; // of the timeline
};

/** Where the transport stands while a file is rendered: on along the timeline, but for a loop and jumps. All
 * times are those of the nearest frames. */
class CPlayhead
{
public:
    /**
     * @param inRate frames in a second.
     * @param inJumps in the order of their times.
     * @return a problem where the loop is shorter than a frame.
     */
    static COutcome<CPlayhead> Create(const CTimeline& inTimeline, double inRate, bool inPlaying,
                                      const std::optional<SLoop>& inLoop, const std::vector<SJump>& inJumps);

    /** In frames of the timeline. */
    std::int64_t Position() const noexcept { return mPassages.back().mPosition + Played(); }
    /** Up to where the position jumps, at least 1; nothing where it never does. */
    std::optional<std::int64_t> FramesUntilJump() const;
    /** @param inFrames of the file, not past the next jump. */
    void Advance(std::int64_t inFrames);
    /** How the file went along the timeline so far; the first begins with the file. */
    const std::vector<SPassage>& Passages() const noexcept { return mPassages; }

private:
    CPlayhead() = default;
    std::int64_t Played() const noexcept { return mPlaying ? mFileFrame - mPassages.back().mFileFrame : 0; }
    void JumpTo(std::int64_t inPosition);

    bool mPlaying = true;
    bool mLooping = false;
    std::int64_t mLoopBegin = 0; // frames of the timeline, as is the next
    std::int64_t mLoopEnd = 0;
    std::vector<SPassage> mJumps; // each begins a passage
    std::size_t mNextJump = 0;
    std::int64_t mFileFrame = 0;
    std::vector<SPassage> mPassages{{0, 0}};
};

/** The changes of tempo and meter as they were met, at the times of the file. */
struct SHeardTimeline
{
    std::vector<STempoChange> mTempos;
    std::vector<SMeterChange> mMeters;
};
/** @param inFrames the length of the file. */
SHeardTimeline HearTimeline(const CTimeline& inTimeline, double inRate, bool inPlaying,
                            const std::vector<SPassage>& inPassages, std::int64_t inFrames);
