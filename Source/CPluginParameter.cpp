#include "Source/CPluginParameter.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr std::uint32_t kNumberBits = 8;
constexpr std::uint32_t kNumberMask = (1U << kNumberBits) - 1;
constexpr double kLargestValue = (1U << (32 - kNumberBits)) - 1;

std::uint32_t PackedValue(double inNormalized) noexcept
{
    const double inside = inNormalized > 0.0 ? std::min(inNormalized, 1.0) : 0.0; // also for no number
    return static_cast<std::uint32_t>(inside * kLargestValue + 0.5);
}
} // namespace

CPluginParameter::CPluginParameter() noexcept
{
    for (std::atomic<std::uint32_t>& request : mRequests)
        request.store(kNumberMask, std::memory_order_relaxed); // the number of none that comes there first
}

std::optional<std::uint32_t> CPluginParameter::NoteRequest(double inNormalized) noexcept
{
    mHasNewerValue.store(true, std::memory_order_relaxed);
    SWaiting before = mWaiting.load(std::memory_order_relaxed);
    SWaiting after;
    do
    {
        if (before.count == kCapacity)
            return std::nullopt;
        after = before;
        ++after.made;
        ++after.count;
        ++after.sinceUpdate;
        ++after.behindAnswer;
    } while (
        !mWaiting.compare_exchange_weak(before, after, std::memory_order_acq_rel, std::memory_order_relaxed));
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
    SWaiting before = mWaiting.load(std::memory_order_relaxed);
    SWaiting after;
    do
    {
        if (before.made != *inRequest + 1 || before.count == 0)
            return; // there are newer ones: its place goes when they do
        after = before;
        --after.made;
        --after.count;
        after.sinceUpdate = std::min(after.sinceUpdate, after.count);
        after.behindAnswer = std::min(after.behindAnswer, after.count);
    } while (
        !mWaiting.compare_exchange_weak(before, after, std::memory_order_acq_rel, std::memory_order_relaxed));
}

CPluginParameter::SMatch CPluginParameter::Find(const SWaiting& inWaiting, double inNormalized) const noexcept
{
    SMatch match;
    if (!(inNormalized >= -kTolerance && inNormalized <= 1.0 + kTolerance))
        return match;
    constexpr auto kNear = static_cast<std::int32_t>(kTolerance * kLargestValue) + 1;
    const auto value = static_cast<std::int32_t>(PackedValue(inNormalized));
    const std::uint32_t oldest = inWaiting.made - inWaiting.count;
    for (std::uint8_t place = 0; place < inWaiting.count; ++place)
    {
        const std::uint32_t number = oldest + place;
        const std::uint32_t request = mRequests[number % kCapacity].load(std::memory_order_acquire);
        const bool isStored = ((request ^ number) & kNumberMask) == 0;
        if (!isStored || std::abs(static_cast<std::int32_t>(request >> kNumberBits) - value) > kNear)
            continue;
        match.oldest = std::min(match.oldest, place);
        match.newest = place;
    }
    return match;
}

void CPluginParameter::BeginCycle(SWaiting& ioWaiting) noexcept
{
    if (ioWaiting.habit != kAnswersEach)
        ioWaiting.count = std::min(ioWaiting.count, ioWaiting.behindAnswer);
    ioWaiting.sinceUpdate = std::min(ioWaiting.sinceUpdate, ioWaiting.count);
}

bool CPluginParameter::TakeAnswer(SWaiting& ioWaiting, const SMatch& inAnswered) noexcept
{
    if (inAnswered.oldest > 0)
        ioWaiting.habit = kSkipsSome;
    else if (ioWaiting.count > 1 && inAnswered.newest == 0 && ioWaiting.habit == kHabitUnseen)
        ioWaiting.habit = kAnswersEach;
    const auto notOlder = static_cast<std::uint8_t>(ioWaiting.count - inAnswered.oldest);
    const bool isInTime = ioWaiting.sinceUpdate >= notOlder;
    const bool newerIsInTime = ioWaiting.sinceUpdate > 0; // also one with the same value
    ioWaiting.behindAnswer = static_cast<std::uint8_t>(ioWaiting.count - inAnswered.newest - 1);
    ioWaiting.count = static_cast<std::uint8_t>(notOlder - 1);
    ioWaiting.sinceUpdate = std::min(ioWaiting.sinceUpdate, ioWaiting.count);
    return isInTime || newerIsInTime;
}

bool CPluginParameter::SettleWaiting(SWaiting inBefore, double inNormalized, std::uint32_t inCycle) noexcept
{
    const bool isNewCycle = mCycle.exchange(inCycle, std::memory_order_relaxed) != inCycle;
    SWaiting after;
    bool isAnswer = false;
    do
    {
        after = inBefore;
        if (isNewCycle)
            BeginCycle(after);
        const SMatch answered = Find(after, inNormalized);
        const bool isKnown = answered.oldest != kCapacity;
        isAnswer = isKnown && TakeAnswer(after, answered);
        if (!isAnswer)
            after.sinceUpdate = 0;
        if (!isKnown && isNewCycle && inBefore.count == kCapacity)
            after.count = after.behindAnswer = 0;
    } while (!mWaiting.compare_exchange_weak(inBefore, after, std::memory_order_acq_rel,
                                             std::memory_order_acquire));
    return isAnswer;
}

void CPluginParameter::NoteUpdate() noexcept
{
    mHasNewerValue.store(true, std::memory_order_relaxed);
    SWaiting before = mWaiting.load(std::memory_order_relaxed);
    SWaiting after;
    do
    {
        after = before;
        after.sinceUpdate = 0;
    } while (
        !mWaiting.compare_exchange_weak(before, after, std::memory_order_acq_rel, std::memory_order_relaxed));
}
