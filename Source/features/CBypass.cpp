#include "Source/features/CBypass.h"

#include <algorithm>

namespace
{
/** @return the share of a fade that has gone on from `inShare` to `inTarget` by `inWay` and no further. */
constexpr float ShareAfter(float inShare, float inTarget, float inWay) noexcept
{
    return inTarget > inShare ? std::min(inShare + inWay, inTarget) : std::max(inShare - inWay, inTarget);
}
} // namespace

CBypass::SLine::SLine(std::int64_t inLatency, std::int32_t inChannels)
    : mLatency(inLatency),
      mSize(static_cast<std::size_t>(inLatency) + kMaxFrames),
      mRings(static_cast<std::size_t>(inChannels), std::vector<float>(mSize))
{
}

CBypass::~CBypass()
{
    delete mOffered.load();
    delete mRetired.load();
}

void CBypass::Configure(double inSampleRate, std::int32_t inInputs, std::int32_t inOutputs)
{
    mStep = inSampleRate > 0.0 ? static_cast<float>(1.0 / (kFadeSeconds * inSampleRate)) : 1.0F;
    mInputs = inInputs;
    mOutputs = inOutputs;
    mLatency = 0;
    mIsUsed.store(false);
    mIsOn.store(false);
    delete mOffered.exchange(nullptr);
    mLine.reset();
    mDry = 0.0F;
}

void CBypass::SetLatency(std::int64_t inSamples)
{
    if (inSamples == mLatency)
        return;
    mLatency = inSamples;
    if (IsUsed())
        OfferLine();
}

void CBypass::Switch(bool inIsOn)
{
    if (inIsOn && !IsUsed())
        OfferLine();
    mIsOn.store(inIsOn, std::memory_order_relaxed);
    if (inIsOn)
        mIsUsed.store(true, std::memory_order_relaxed);
}

void CBypass::OfferLine()
{
    auto line = std::make_unique<SLine>(mLatency, mInputs);
    delete mOffered.exchange(line.release(), std::memory_order_acq_rel); // one that came too late
}

void CBypass::TimerBeat() { delete mRetired.exchange(nullptr, std::memory_order_acquire); }

void CBypass::ChangeLine() noexcept
{
    // An old line is left while nothing of it is heard, and when the one before it has been freed.
    const bool isFree =
        mLine == nullptr || (mDry == 0.0F && mRetired.load(std::memory_order_relaxed) == nullptr);
    if (!isFree || mOffered.load(std::memory_order_relaxed) == nullptr)
        return;
    SLine* const old = mLine.release();
    mLine.reset(mOffered.exchange(nullptr, std::memory_order_acquire));
    mRetired.store(old, std::memory_order_release);
}

void CBypass::Take(const float* const* inInputs, std::int32_t inFirst, std::int32_t inFrames) noexcept
{
    ChangeLine();
    mPart = static_cast<std::size_t>(inFrames);
    if (mLine == nullptr)
        return;
    const std::size_t untilEnd = std::min(mPart, mLine->mSize - mLine->mNext);
    for (std::size_t channel = 0; channel < mLine->mRings.size(); ++channel)
    {
        const float* const input = inInputs[channel] + inFirst;
        std::vector<float>& ring = mLine->mRings[channel];
        std::copy_n(input, untilEnd, ring.data() + mLine->mNext);
        std::copy_n(input + untilEnd, mPart - untilEnd, ring.data());
    }
}

float CBypass::Target() const noexcept
{
    const bool isHeard = mIsOn.load(std::memory_order_relaxed) &&
                         mOffered.load(std::memory_order_relaxed) == nullptr &&
                         mLine->mTaken >= mLine->mLatency;
    return isHeard ? 1.0F : 0.0F;
}

void CBypass::Mix(float* const* ioOutputs, std::int32_t inChannels, std::int32_t inFirst) noexcept
{
    if (mLine == nullptr)
        return;
    const float target = Target();
    if (mDry != 0.0F || target != 0.0F)
    {
        const auto rings = static_cast<std::int32_t>(mLine->mRings.size());
        for (std::int32_t channel = 0; channel < inChannels; ++channel)
        {
            const bool hasInput = channel < mOutputs && rings > 0;
            MixChannel(ioOutputs[channel] + inFirst,
                       hasInput ? &mLine->mRings[static_cast<std::size_t>(std::min(channel, rings - 1))]
                                : nullptr,
                       target);
        }
        mDry = ShareAfter(mDry, target, static_cast<float>(mPart) * mStep);
    }
    mLine->mNext = (mLine->mNext + mPart) % mLine->mSize;
    mLine->mTaken += static_cast<std::int64_t>(mPart);
}

void CBypass::MixChannel(float* ioOutput, const std::vector<float>* inRing, float inTarget) const noexcept
{
    // Where the input of as many samples ago as the line is late stands in a ring.
    std::size_t late = (mLine->mNext + kMaxFrames) % mLine->mSize;
    for (std::size_t i = 0; i < mPart; ++i)
    {
        const float dry = ShareAfter(mDry, inTarget, static_cast<float>(i + 1) * mStep);
        const float input = inRing != nullptr ? (*inRing)[late] : 0.0F;
        ioOutput[i] = dry == 1.0F ? input : ioOutput[i] * (1.0F - dry) + input * dry;
        late = late + 1 < mLine->mSize ? late + 1 : 0;
    }
}
