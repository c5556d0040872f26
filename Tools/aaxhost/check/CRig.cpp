#include "Tools/aaxhost/check/CRig.h"

#include "Tools/aaxhost/check/Figures.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <fmt/format.h>
#include <numbers>

namespace
{
constexpr std::uint32_t kMark = 0x7FC0FFEE; // a NaN that no computation gives

bool IsMark(float inSample) noexcept { return std::bit_cast<std::uint32_t>(inSample) == kMark; }
} // namespace

SignalSource Silence()
{
    return [](std::int64_t, std::size_t) { return 0.0F; };
}

SignalSource Constant(float inValue)
{
    return [=](std::int64_t, std::size_t) { return inValue; };
}

SignalSource Noise(float inPeak)
{
    return [=](std::int64_t frame, std::size_t channel)
    {
        // A hash of the place, so that any cut into blocks gives the same noise.
        auto bits =
            static_cast<std::uint32_t>(frame) * 2654435761U + static_cast<std::uint32_t>(channel) * 40503U;
        bits ^= bits >> 15;
        bits *= 2246822519U;
        bits ^= bits >> 13;
        bits *= 3266489917U;
        bits ^= bits >> 16;
        return inPeak * (static_cast<float>(bits >> 8) / 8388608.0F - 1.0F);
    };
}

SignalSource Sine(double inHertz, float inPeak, double inRate)
{
    return [=](std::int64_t frame, std::size_t)
    {
        const double phase = 2.0 * std::numbers::pi * inHertz * static_cast<double>(frame) / inRate;
        return inPeak * static_cast<float>(std::sin(phase));
    };
}

SignalSource Impulse(std::int64_t inFrame, float inPeak)
{
    return [=](std::int64_t frame, std::size_t) { return frame == inFrame ? inPeak : 0.0F; };
}

[[gnu::noinline]] void SpoilStack() noexcept
{
    std::array<unsigned char, 65536> bytes; // more than the frames of most render functions
    bytes.fill(0xFF);
    asm volatile("" : : "r"(bytes.data()) : "memory"); // so that they are written
}

CRig::SBuffer::SBuffer() : mMemory(SRenderCall::kBufferFrames + 2 * kMargin, 0.0F) { MarkAround(0); }

void CRig::SBuffer::MarkAround(std::int32_t inFrames) noexcept
{
    std::fill_n(mMemory.begin(), kMargin, std::bit_cast<float>(kMark));
    std::fill(mMemory.begin() + kMargin + inFrames, mMemory.end(), std::bit_cast<float>(kMark));
}

std::int32_t CRig::SBuffer::FirstChange(std::int32_t inFrames) const noexcept
{
    const auto changed = [](float sample) { return !IsMark(sample); };
    const auto after = std::find_if(mMemory.begin() + kMargin + inFrames, mMemory.end(), changed);
    if (after != mMemory.end())
        return static_cast<std::int32_t>(after - mMemory.begin()) - kMargin;
    const auto before = std::find_if(mMemory.begin(), mMemory.begin() + kMargin, changed);
    return before != mMemory.begin() + kMargin ? static_cast<std::int32_t>(before - mMemory.begin()) - kMargin
                                               : kIntact;
}

CRig::CRig(CCheckContext& inContext, double inRate)
    : mRate(inRate),
      mInstance(inContext.MakeInstance(inRate)),
      mCall(mInstance->MakeRenderCall()),
      mNode(mCall->FindNode(AAX_eMIDINodeType_LocalInput)),
      mInputs(mCall->mInputs.size()),
      mOutputs(mCall->mOutputs.size()),
      mRecording(mOutputs.size()),
      mInputCopies(mInputs.size(), std::vector<float>(SRenderCall::kBufferFrames)),
      mSource(Silence())
{
    for (std::size_t i = 0; i < mInputs.size(); ++i)
        mCall->mInputs[i] = mInputs[i].Frames();
    for (std::size_t i = 0; i < mOutputs.size(); ++i)
        mCall->mOutputs[i] = mOutputs[i].Frames();
    Transport().mPlaying = true;
}

void CRig::Send(std::uint32_t inOffset, std::uint8_t inStatus, std::uint8_t inFirst, std::uint8_t inSecond)
{
    const std::uint8_t bytes[] = {inStatus, inFirst, inSecond};
    if (mNode != nullptr)
        mNode->Add(inOffset, bytes);
}

void CRig::ClearRecording()
{
    for (auto& channel : mRecording)
        channel.clear();
}

void CRig::RenderInPlace()
{
    mInPlace = true;
    for (std::size_t i = 0; i < std::min(mInputs.size(), mOutputs.size()); ++i)
        mCall->mOutputs[i] = mInputs[i].Frames();
}

void CRig::ShareUnusedOutputs()
{
    for (std::size_t i = 3; i < mOutputs.size(); ++i)
        mCall->mOutputs[i] = mOutputs[2].Frames();
}

void CRig::FillInputs(std::int32_t inFrames)
{
    for (std::size_t channel = 0; channel < mInputs.size(); ++channel)
    {
        float* const frames = mInputs[channel].Frames();
        // Some plug-ins read a whole block of the largest size: behind the frames there is silence.
        std::fill_n(frames, SRenderCall::kBufferFrames, 0.0F);
        for (std::int32_t i = 0; i < inFrames; ++i)
            frames[i] = mSource(mPosition + i, channel);
    }
}

void CRig::RenderBlock(std::int32_t inFrames)
{
    FillInputs(inFrames);
    for (SBuffer& output : mOutputs)
    {
        output.MarkAround(mDirty ? 0 : inFrames);
        if (!mDirty)
            std::fill_n(output.Frames(), inFrames, 0.0F);
    }
    for (std::size_t i = 0; i < mInputs.size(); ++i)
        std::copy_n(mInputs[i].Frames(), inFrames, mInputCopies[i].begin());
    mCall->mFrames = inFrames;
    mCall->mClock = mPosition;
    SpoilStack();
    mInstance->Render(*mCall);
    LookAtOutputs(inFrames);
    mPosition += inFrames;
    if (Transport().mPlaying)
        Transport().mSamplePosition += inFrames;
    if (mNode != nullptr)
        mNode->Clear();
}

void CRig::LookAtInputs(std::int32_t inFrames)
{
    const auto sameBits = [](float a, float b)
    { return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b); };
    for (std::size_t channel = 0; channel < mInputs.size() && !mInPlace && mWrittenInput.empty(); ++channel)
    {
        const float* const frames = mInputs[channel].Frames();
        int changed = 0;
        for (std::int32_t i = 0; i < inFrames; ++i)
            changed += sameBits(frames[i], mInputCopies[channel][static_cast<std::size_t>(i)]) ? 0 : 1;
        if (changed > 0)
            mWrittenInput = fmt::format("in a block of {} frames, {} of them in input {} of {}", inFrames,
                                        changed, channel + 1, mInputs.size());
    }
}

void CRig::LookAtSample(float inSample, std::size_t inChannel, std::int64_t inFrame)
{
    ++mBroken.mAll;
    if (std::isfinite(inSample))
        mPeak = std::max(mPeak, std::abs(inSample));
    else if (mBroken.mSamples++ == 0)
        mBroken.mFirst = fmt::format("{} in output {} at frame {} ({:.1f} ms)",
                                     std::isnan(inSample) ? "not a number" : "an infinite sample",
                                     inChannel + 1, inFrame, 1000.0 * static_cast<double>(inFrame) / mRate);
}

void CRig::LookAtOutputs(std::int32_t inFrames)
{
    LookAtInputs(inFrames);
    for (std::size_t channel = 0; channel < mOutputs.size(); ++channel)
    {
        const float* const frames = mCall->mOutputs[channel];
        const auto marks = mDirty ? std::count_if(frames, frames + inFrames, IsMark) : 0;
        if (marks > 0 && mUnwritten.empty())
            mUnwritten = fmt::format("In a block of {} frames, {} of them are not written in output {} of {}",
                                     inFrames, marks, channel + 1, mOutputs.size());
        for (std::int32_t i = 0; i < inFrames; ++i)
            LookAtSample(frames[i], channel, mPosition + i);
        if (mRecords)
            mRecording[channel].insert(mRecording[channel].end(), frames, frames + inFrames);
        const std::int32_t change = mOutputs[channel].FirstChange(inFrames);
        if (change != SBuffer::kIntact && mOverrun.empty())
            mOverrun = fmt::format("In a block of {} frames output {} was written at frame {}", inFrames,
                                   channel + 1, change);
    }
}

void CRig::Render(std::int32_t inFrames)
{
    // A refusal shows in what is rendered; the checks of parameters and automation look at the answers.
    (void)mInstance->RunCycle();
    RenderBlock(inFrames);
    if (mPosition < mNextTimer)
        return;
    (void)mInstance->Parameters().TimerWakeup(); // a host goes on without it too
    mNextTimer = mPosition + std::llround(mRate / kTimersPerSecond);
}

void CRig::RenderFrames(std::int64_t inFrames, std::int32_t inBlock)
{
    for (std::int64_t left = inFrames; left > 0; left -= inBlock)
        Render(static_cast<std::int32_t>(std::min<std::int64_t>(left, inBlock)));
}

void CRig::RenderSeconds(double inSeconds, std::int32_t inBlock)
{
    RenderFrames(std::llround(inSeconds * mRate), inBlock);
}

float CRig::TakePeak() noexcept { return std::exchange(mPeak, 0.0F); }

void CRig::ExpectFinite(const std::string& inWhen) const
{
    if (mBroken.mSamples > 0)
        throw SCheckEnd{SFinding::Failed(fmt::format("The output has {} {}.", NonFinite(), inWhen))};
}

std::string CRig::NonFinite() const
{
    if (mBroken.mSamples == 0)
        return {};
    return mBroken.mFirst +
           (mBroken.mSamples == 1
                ? fmt::format(", the only broken one of {} samples,", mBroken.mAll)
                : fmt::format(", the first of {} broken samples of {},", mBroken.mSamples, mBroken.mAll));
}
