#include "Source/CPluginParameter.h"

#include <algorithm>
#include <cstdlib>

namespace
{
constexpr std::uint32_t kNumberBits = 8;
constexpr std::uint32_t kNumberMask = (1U << kNumberBits) - 1;
constexpr double kLargestValue = (1U << (32 - kNumberBits)) - 1;

std::uint32_t PackedValue(double inNormalized) noexcept
{
    return static_cast<std::uint32_t>(CPluginParameter::AsRequested(inNormalized) * kLargestValue);
}
} // namespace

CPluginParameter::CPluginParameter() noexcept
{
    for (std::atomic<std::uint32_t>& request : mRequests)
        // No request that is stored in this place first has these low bits.
        request.store(kNumberMask, std::memory_order_relaxed);
}

template <class Change>
CPluginParameter::SWaiting CPluginParameter::ChangeWaiting(Change inChange) noexcept
{
    SWaiting before = mWaiting.load(std::memory_order_acquire);
    SWaiting after;
    do
    {
        after = before;
        inChange(after);
    } while (
        !mWaiting.compare_exchange_weak(before, after, std::memory_order_acq_rel, std::memory_order_acquire));
    return before;
}

std::optional<std::uint32_t> CPluginParameter::NoteRequest(double inNormalized) noexcept
{
    mHasNewerValue.store(true, std::memory_order_relaxed);
    mQuietBeats.store(0, std::memory_order_relaxed);
    const SWaiting before = ChangeWaiting(
        [](SWaiting& ioWaiting)
        {
            if (ioWaiting.mCount == kCapacity)
                return;
            ++ioWaiting.mMade;
            ++ioWaiting.mCount;
            ++ioWaiting.mSinceUpdate;
        });
    if (before.mCount == kCapacity)
        return std::nullopt;
    // The host is asked afterwards, so that nobody looks for it before it is stored.
    mRequests[before.mMade % kCapacity].store(
        PackedValue(inNormalized) << kNumberBits | (before.mMade & kNumberMask), std::memory_order_release);
    return before.mMade;
}

void CPluginParameter::TakeBack(std::optional<std::uint32_t> inRequest) noexcept
{
    if (!inRequest)
        return;
    mRequests[*inRequest % kCapacity].store(~*inRequest & kNumberMask,
                                            std::memory_order_release); // found no more
    (void)ChangeWaiting(
        [=](SWaiting& ioWaiting)
        {
            if (ioWaiting.mMade != *inRequest + 1 || ioWaiting.mCount == 0)
                return; // there are newer ones: its place goes when they do
            --ioWaiting.mMade;
            --ioWaiting.mCount;
            ioWaiting.mSinceUpdate = std::min(ioWaiting.mSinceUpdate, ioWaiting.mCount);
        });
}

std::optional<std::uint16_t> CPluginParameter::Find(const SWaiting& inWaiting,
                                                    double inNormalized) const noexcept
{
    if (!(inNormalized >= -kTolerance && inNormalized <= 1.0 + kTolerance))
        return std::nullopt;
    constexpr auto kNear = static_cast<std::int32_t>(kTolerance * kLargestValue) + 1;
    const auto value = static_cast<std::int32_t>(PackedValue(inNormalized));
    const std::uint32_t oldest = inWaiting.mMade - inWaiting.mCount;
    for (std::uint16_t place = 0; place < inWaiting.mCount; ++place)
    {
        const std::uint32_t number = oldest + place;
        const std::uint32_t request = mRequests[number % kCapacity].load(std::memory_order_acquire);
        const bool isStored = ((request ^ number) & kNumberMask) == 0;
        if (isStored && std::abs(static_cast<std::int32_t>(request >> kNumberBits) - value) <= kNear)
            return place;
    }
    return std::nullopt;
}

bool CPluginParameter::SettleWaiting(SWaiting inBefore, double inNormalized) noexcept
{
    SWaiting after;
    bool isAnswer = false;
    do
    {
        after = inBefore;
        const std::optional<std::uint16_t> answered = Find(after, inNormalized);
        if (answered)
        {
            const auto notOlder = static_cast<std::uint16_t>(after.mCount - *answered);
            const bool isInTime = after.mSinceUpdate >= notOlder;
            const bool isLast = notOlder == 1 && !mHasPutOff.load(std::memory_order_relaxed);
            isAnswer = isInTime || !isLast;
            after.mCount = static_cast<std::uint16_t>(notOlder - 1);
            after.mSinceUpdate = std::min(after.mSinceUpdate, after.mCount);
        }
        else
        {
            isAnswer = false;
            after.mSinceUpdate = 0;
        }
    } while (!mWaiting.compare_exchange_weak(inBefore, after, std::memory_order_acq_rel,
                                             std::memory_order_acquire));
    mQuietBeats.store(0, std::memory_order_relaxed);
    mLastAnswer.store(static_cast<float>(inNormalized), std::memory_order_relaxed);
    mIsOwed.store(isAnswer && after.mCount > 0, std::memory_order_release);
    return isAnswer;
}

void CPluginParameter::NoteUpdate() noexcept
{
    mHasNewerValue.store(true, std::memory_order_relaxed);
    mIsOwed.store(false, std::memory_order_relaxed);
    (void)ChangeWaiting([](SWaiting& ioWaiting) { ioWaiting.mSinceUpdate = 0; });
}

bool CPluginParameter::PutsOff() noexcept
{
    if (mWaiting.load(std::memory_order_relaxed).mCount < kCapacity)
        return false;
    mHasNewerValue.store(true, std::memory_order_relaxed);
    mHasPutOff.store(true, std::memory_order_relaxed);
    return true;
}

std::optional<float> CPluginParameter::TimerBeat() noexcept
{
    SWaiting waiting = mWaiting.load(std::memory_order_acquire);
    if (waiting.mCount == 0 || mQuietBeats.fetch_add(1, std::memory_order_relaxed) + 1 < kQuietBeats)
        return std::nullopt;
    // Not what is asked or answered meanwhile: that changes what waits.
    if (!mWaiting.compare_exchange_strong(waiting, {waiting.mMade, 0, 0}, std::memory_order_acq_rel,
                                          std::memory_order_relaxed))
        return std::nullopt;
    mQuietBeats.store(0, std::memory_order_relaxed);
    if (!mIsOwed.exchange(false, std::memory_order_acquire))
        return std::nullopt;
    return mLastAnswer.load(std::memory_order_relaxed);
}
