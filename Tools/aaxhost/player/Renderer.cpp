#include "Tools/aaxhost/player/Renderer.h"

#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CPostedMidi.h"
#include "Tools/support/CStage.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <limits>

namespace
{
/** The state of one render: feeds an instance block by block. */
class CBlockFeeder
{
public:
    CBlockFeeder(CInstance& inInstance, const SRenderJob& inJob, const CPlayhead& inPlayhead)
        : mInstance(inInstance),
          mJob(inJob),
          mPlayhead(inPlayhead),
          mCall(inInstance.MakeRenderCall()),
          mNode(mCall->FindNode(AAX_eMIDINodeType_LocalInput)),
          mOutputNode(mCall->FindNode(AAX_eMIDINodeType_LocalOutput)),
          mLastValues(inJob.mAutomation.size(), std::numeric_limits<double>::quiet_NaN()),
          mTimerInterval(TimerInterval(inJob)),
          mNextTimer(mTimerInterval > 0 ? 0 : std::numeric_limits<std::int64_t>::max())
    {
        STransportState& transport = Transport();
        transport.mTimeline = inJob.mTimeline;
        transport.mPlaying = inJob.mPlaying;
        transport.mSampleRate = inJob.mRate;
        transport.mLooping = inJob.mLoop.has_value();
        const SLoop loop = inJob.mLoop.value_or(SLoop());
        transport.mLoopStartTick = CTimeline::TicksOf(loop.mBegin);
        transport.mLoopEndTick = CTimeline::TicksOf(loop.mEnd);
    }

    COutcome<SDone> RenderBlock(std::int64_t inStart, std::int32_t inFrames)
    {
        // What the instance asks for between two blocks takes effect before the next one; automation is
        // newer.
        if (const AAX_Result result = mInstance.RunCycle())
            return SProblem{fmt::format("The instance refuses updates: GenerateCoefficients answered {}.",
                                        NameOfResult(result))};
        if (auto done = ApplyAutomation(inStart); !done)
            return done;
        Transport().mSamplePosition = mPlayhead.Position();
        FillInputs(inStart, inFrames);
        FillMidi(inStart, inFrames);
        mCall->mFrames = inFrames;
        mCall->mClock = inStart;
        mInstance.Render(*mCall);
        mInstance.Host().Controller().State().mFramesRendered = inStart + inFrames;
        if (mJob.mMidiOutput != nullptr && mOutputNode != nullptr)
            mJob.mMidiOutput->TakeBlock(*mOutputNode, inStart, inFrames);
        if (inStart >= mNextTimer)
        {
            (void)mInstance.Parameters().TimerWakeup(); // a host goes on without it too
            mNextTimer = inStart + mTimerInterval;
        }
        return SDone{};
    }

    std::span<float* const> Outputs() const { return mCall->mOutputs; }

private:
    /** In frames; 0 where there is no timer. */
    static std::int64_t TimerInterval(const SRenderJob& inJob)
    {
        return inJob.mTimerRate > 0.0
                   ? std::max<std::int64_t>(1, std::llround(inJob.mRate / inJob.mTimerRate))
                   : 0;
    }

    COutcome<SDone> ApplyAutomation(std::int64_t inStart)
    {
        bool changed = false;
        const double seconds = static_cast<double>(inStart) / mJob.mRate;
        for (std::size_t i = 0; i < mJob.mAutomation.size(); ++i)
        {
            const SAutomationLane& lane = mJob.mAutomation[i];
            const double value = lane.mCurve.ValueAt(seconds);
            if (value == mLastValues[i])
                continue;
            mLastValues[i] = value;
            changed = true;
            if (const AAX_Result result = mInstance.UpdateParameter(lane.mParameterID, value))
                return SProblem{fmt::format("The parameter '{}' refuses its automation: {}.",
                                            lane.mParameterID, NameOfResult(result))};
        }
        if (!changed)
            return SDone{};
        if (const AAX_Result result = mInstance.FinishUpdates())
            return SProblem{fmt::format("The instance refuses automation: GenerateCoefficients answered {}.",
                                        NameOfResult(result))};
        return SDone{};
    }

    STransportState& Transport() { return mInstance.Host().Transport().State(); }

    void FillInputs(std::int64_t inStart, std::int32_t inFrames)
    {
        for (std::size_t channel = 0; channel < mCall->mInputs.size(); ++channel)
        {
            const std::span<float> buffer = mCall->Input(channel);
            std::fill(buffer.begin(), buffer.end(), 0.0F); // the instance may have written into it
            const std::vector<float>* source = InputChannel(channel);
            const std::int64_t available =
                source != nullptr ? static_cast<std::int64_t>(source->size()) - inStart : 0;
            if (available > 0)
                std::copy_n(source->begin() + inStart, std::min<std::int64_t>(available, inFrames),
                            buffer.begin());
        }
    }

    const std::vector<float>* InputChannel(std::size_t inChannel) const
    {
        if (mJob.mInput == nullptr || mJob.mInput->mChannels.empty())
            return nullptr;
        const auto& channels = mJob.mInput->mChannels;
        if (channels.size() == 1)
            return &channels.front();
        return inChannel < channels.size() ? &channels[inChannel] : nullptr;
    }

    void FillMidi(std::int64_t inStart, std::int32_t inFrames)
    {
        if (mNode == nullptr)
            return;
        mNode->Clear();
        for (; mNextEvent < mJob.mMidi.size(); ++mNextEvent)
        {
            const SMidiEvent& event = mJob.mMidi[mNextEvent];
            const double frame = std::round(event.mSeconds * mJob.mRate);
            if (frame >= static_cast<double>(inStart + inFrames))
                return;
            const double offset = std::max(0.0, frame - static_cast<double>(inStart));
            mNode->Add(static_cast<std::uint32_t>(offset), std::span(event.mBytes).first(event.mLength));
        }
    }

    CInstance& mInstance;
    const SRenderJob& mJob;
    const CPlayhead& mPlayhead;
    std::unique_ptr<SRenderCall> mCall;
    CHostMidiNode* mNode = nullptr;
    CHostMidiNode* mOutputNode = nullptr;
    std::vector<double> mLastValues; // of each automation lane, not a number before the first block
    std::size_t mNextEvent = 0;
    std::int64_t mTimerInterval = 0; // frames
    std::int64_t mNextTimer = 0;     // frames
};

/** Waits for a second in which no output is louder than `kSilence`. */
class CSilenceDetector
{
public:
    explicit CSilenceDetector(double inRate) : mWanted(std::max<std::int64_t>(1, std::llround(inRate))) {}

    /** @return the frames of the block up to where the second is full, 0 when it is not. */
    std::int32_t FramesUntilSilent(std::span<float* const> inOutputs, std::int32_t inFrames)
    {
        for (std::int32_t i = 0; i < inFrames; ++i)
        {
            // Written so that what is no number is loud.
            const bool isSilent =
                std::all_of(inOutputs.begin(), inOutputs.end(),
                            [i](const float* output) { return std::abs(output[i]) <= kSilence; });
            mSilent = isSilent ? mSilent + 1 : 0;
            if (mSilent == mWanted)
                return i + 1;
        }
        return 0;
    }

private:
    std::int64_t mWanted = 0; // frames
    std::int64_t mSilent = 0; // frames in a row so far
};
/** As many frames as are to be made up for now. */
COutcome<std::int64_t> LatencyInFrames(CInstance& inInstance, const SRenderJob& inJob)
{
    if (!inJob.mCompensates)
        return std::int64_t{0};
    const std::int64_t latency = inInstance.Host().Controller().State().mSignalLatency;
    if (static_cast<double>(latency) > kMostCompensated * inJob.mRate)
        return SProblem{fmt::format(
            "The module tells a latency of {} samples, and no more than {} seconds can be made up for.",
            latency, kMostCompensated)};
    return std::max<std::int64_t>(0, latency);
}
} // namespace

COutcome<SRenderEnd> RenderOffline(CInstance& inInstance, const SRenderJob& inJob, const RenderSink& inSink,
                                   const RenderProgress& inProgress)
{
    if (inJob.mBlockFrames < 1 || inJob.mBlockFrames > SRenderCall::kBufferFrames)
        return SProblem{fmt::format("A block of {} frames is not one of 1 to {}.", inJob.mBlockFrames,
                                    SRenderCall::kBufferFrames)};
    const CStage stage("it was rendering");
    inInstance.Host().Controller().State().mFramesRendered = 0;
    auto playhead =
        CPlayhead::Create(inJob.mTimeline, inJob.mRate, inJob.mPlaying, inJob.mLoop, inJob.mJumps);
    if (!playhead)
        return playhead.Problem();
    CBlockFeeder feeder(inInstance, inJob, *playhead);
    CSilenceDetector silence(inJob.mRate);
    SRenderEnd end;
    while (true)
    {
        // Asked for anew each time: the module may tell another latency at any time.
        const auto latency = LatencyInFrames(inInstance, inJob);
        if (!latency)
            return latency.Problem();
        end.mLatency = *latency;
        const std::int64_t asked = inJob.mFrames + end.mLatency;
        const std::int64_t most = asked + inJob.mMostTailFrames;
        if (end.mFrames >= most || end.mIsSilent)
            break;
        // What is asked for ends with a block, so that the tail changes nothing of it.
        const std::int64_t left = (end.mFrames < asked ? asked : most) - end.mFrames;
        const std::int64_t untilJump = playhead->FramesUntilJump().value_or(left);
        auto frames =
            static_cast<std::int32_t>(std::min<std::int64_t>({inJob.mBlockFrames, left, untilJump}));
        if (auto rendered = feeder.RenderBlock(end.mFrames, frames); !rendered)
            return rendered.Problem();
        playhead->Advance(frames);
        const auto outputs = feeder.Outputs();
        if (end.mFrames >= asked)
        {
            const std::int32_t wanted = silence.FramesUntilSilent(outputs, frames);
            end.mIsSilent = wanted > 0;
            frames = end.mIsSilent ? wanted : frames;
        }
        if (auto taken = inSink({outputs.data(), outputs.size()}, frames); !taken)
            return taken.Problem();
        end.mFrames += frames;
        if (inProgress)
            inProgress(end.mFrames);
    }
    end.mPassages = playhead->Passages();
    return end;
}
