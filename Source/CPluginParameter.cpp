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
        request.store(kNumberMask, std::memory_order_relaxed); // the number of none that comes there first
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
            if (ioWaiting.count == kCapacity)
                return;
            ++ioWaiting.made;
            ++ioWaiting.count;
            ++ioWaiting.sinceUpdate;
        });
    if (before.count == kCapacity)
        return std::nullopt;
    // The host is asked afterwards, so that nobody looks for it before it is stored.
    mRequests[before.made % kCapacity].store(
        PackedValue(inNormalized) << kNumberBits | (before.made & kNumberMask), std::memory_order_release);
    return before.made;
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
            if (ioWaiting.made != *inRequest + 1 || ioWaiting.count == 0)
                return; // there are newer ones: its place goes when they do
            --ioWaiting.made;
            --ioWaiting.count;
            ioWaiting.sinceUpdate = std::min(ioWaiting.sinceUpdate, ioWaiting.count);
        });
}

std::optional<std::uint16_t> CPluginParameter::Find(const SWaiting& inWaiting,
                                                    double inNormalized) const noexcept
{
    if (!(inNormalized >= -kTolerance && inNormalized <= 1.0 + kTolerance))
        return std::nullopt;
    constexpr auto kNear = static_cast<std::int32_t>(kTolerance * kLargestValue) + 1;
    const auto value = static_cast<std::int32_t>(PackedValue(inNormalized));
    const std::uint32_t oldest = inWaiting.made - inWaiting.count;
    for (std::uint16_t place = 0; place < inWaiting.count; ++place)
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
            const auto notOlder = static_cast<std::uint16_t>(after.count - *answered);
            const bool isInTime = after.sinceUpdate >= notOlder;
            const bool isLast = notOlder == 1 && !mHasPutOff.load(std::memory_order_relaxed);
            isAnswer = isInTime || !isLast;
            after.count = static_cast<std::uint16_t>(notOlder - 1);
            after.sinceUpdate = std::min(after.sinceUpdate, after.count);
        }
        else
        {
            isAnswer = false;
            after.sinceUpdate = 0;
        }
    } while (!mWaiting.compare_exchange_weak(inBefore, after, std::memory_order_acq_rel,
                                             std::memory_order_acquire));
    mQuietBeats.store(0, std::memory_order_relaxed);
    mLastAnswer.store(static_cast<float>(inNormalized), std::memory_order_relaxed);
    mIsOwed.store(isAnswer && after.count > 0, std::memory_order_release);
    return isAnswer;
}

void CPluginParameter::NoteUpdate() noexcept
{
    mHasNewerValue.store(true, std::memory_order_relaxed);
    mIsOwed.store(false, std::memory_order_relaxed);
    (void)ChangeWaiting([](SWaiting& ioWaiting) { ioWaiting.sinceUpdate = 0; });
}

bool CPluginParameter::PutsOff() noexcept
{
    if (mWaiting.load(std::memory_order_relaxed).count < kCapacity)
        return false;
    mHasNewerValue.store(true, std::memory_order_relaxed);
    mHasPutOff.store(true, std::memory_order_relaxed);
    return true;
}

std::optional<float> CPluginParameter::Beat() noexcept
{
    if (!IsWaiting() || mQuietBeats.fetch_add(1, std::memory_order_relaxed) + 1 < kQuietBeats)
        return std::nullopt;
    (void)ChangeWaiting([](SWaiting& ioWaiting) { ioWaiting.count = ioWaiting.sinceUpdate = 0; });
    mQuietBeats.store(0, std::memory_order_relaxed);
    if (!mIsOwed.exchange(false, std::memory_order_acquire))
        return std::nullopt;
    return mLastAnswer.load(std::memory_order_relaxed);
}
