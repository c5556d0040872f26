#include "Tools/aaxhost/player/CPlayhead.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

COutcome<CPlayhead> CPlayhead::Create(const CTimeline& inTimeline, double inRate, bool inPlaying,
                                      const std::optional<SLoop>& inLoop, const std::vector<SJump>& inJumps)
{
    CPlayhead head;
    head.mPlaying = inPlaying;
    if (inLoop)
    {
        head.mLooping = true;
        head.mLoopBegin = std::llround(inTimeline.SecondsAt(inLoop->mBegin) * inRate);
        head.mLoopEnd = std::llround(inTimeline.SecondsAt(inLoop->mEnd) * inRate);
        if (head.mLoopBegin >= head.mLoopEnd)
            return SProblem{
                fmt::format("The loop from {} to {} quarter notes holds no frame: it has to end later.",
                            inLoop->mBegin, inLoop->mEnd)};
    }
    for (const SJump& jump : inJumps)
        head.mJumps.push_back(
            {std::llround(jump.mAtSeconds * inRate), std::llround(jump.mToSeconds * inRate)});
    head.Advance(0); // a jump may stand at the very start
    return head;
}

std::optional<std::int64_t> CPlayhead::FramesUntilJump() const
{
    std::optional<std::int64_t> frames;
    if (mNextJump < mJumps.size())
        frames = mJumps[mNextJump].mFileFrame - mFileFrame;
    // Behind its end a loop is not met any more.
    if (mLooping && mPlaying && Position() < mLoopEnd)
        frames = std::min(frames.value_or(mLoopEnd - Position()), mLoopEnd - Position());
    return frames;
}

void CPlayhead::Advance(std::int64_t inFrames)
{
    const bool wasBeforeEnd = Position() < mLoopEnd;
    mFileFrame += inFrames;
    if (mLooping && wasBeforeEnd && Position() >= mLoopEnd)
        JumpTo(mLoopBegin);
    for (; mNextJump < mJumps.size() && mJumps[mNextJump].mFileFrame <= mFileFrame; ++mNextJump)
        JumpTo(mJumps[mNextJump].mPosition);
}

void CPlayhead::JumpTo(std::int64_t inPosition)
{
    if (mPassages.back().mFileFrame == mFileFrame) // several at one place: the last one counts
        mPassages.pop_back();
    mPassages.push_back({mFileFrame, inPosition});
}

namespace
{
/** Adds a change, unless the value held before. */
template <class Change, class Value>
void Hear(std::vector<Change>& ioChanges, Value Change::*inMember, double inSeconds, const Value& inValue)
{
    if (ioChanges.empty() || !(ioChanges.back().*inMember == inValue))
        ioChanges.push_back({inSeconds, inValue});
}
} // namespace

SHeardTimeline HearTimeline(const CTimeline& inTimeline, double inRate, bool inPlaying,
                            const std::vector<SPassage>& inPassages, std::int64_t inFrames)
{
    SHeardTimeline heard;
    const auto seconds = [=](std::int64_t frames) { return static_cast<double>(frames) / inRate; };
    for (std::size_t i = 0; i < inPassages.size(); ++i)
    {
        const SPassage& passage = inPassages[i];
        const std::int64_t next = i + 1 < inPassages.size() ? inPassages[i + 1].mFileFrame : inFrames;
        const double inFile = seconds(passage.mFileFrame);
        const double begin = seconds(passage.mPosition);
        const double end = begin + (inPlaying ? seconds(next - passage.mFileFrame) : 0.0);

        Hear(heard.mTempos, &STempoChange::mBeatsPerMinute, inFile,
             inTimeline.TempoAt(begin).mBeatsPerMinute);
        for (const CTimeline::STempo& tempo : inTimeline.Tempos())
            if (tempo.mSeconds > begin && tempo.mSeconds < end)
                Hear(heard.mTempos, &STempoChange::mBeatsPerMinute, inFile + tempo.mSeconds - begin,
                     tempo.mBeatsPerMinute);

        const std::int64_t tick = CTimeline::TicksOf(inTimeline.QuartersAt(begin));
        Hear(heard.mMeters, &SMeterChange::mMeter, inFile, inTimeline.MeterAt(tick).mMeter);
        for (const CTimeline::SMeterStretch& meter : inTimeline.Meters())
        {
            const double at =
                inTimeline.SecondsAt(static_cast<double>(meter.mTick) / CTimeline::kTicksPerQuarter);
            if (meter.mTick > tick && at < end)
                Hear(heard.mMeters, &SMeterChange::mMeter, inFile + at - begin, meter.mMeter);
        }
    }
    return heard;
}
