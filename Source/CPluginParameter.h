#pragma once
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <type_traits>

/**
 * What passes between the host and one parameter of the wrapped plug-in, beside the value itself: which of
 * the instance's requests the host has not answered yet, and whether the plug-in's value is newer than the
 * AAX parameter's.
 *
 * A host answers a request with an update, in the same call or many cycles later, one by one or only the
 * last. The plug-in that asked has its value and must not be given it again; every other update is the host's
 * own and goes to the plug-in. So requests are kept in the order in which they were made, and an update with
 * the value of one of them settles that one and those before it.
 *
 * - Of several requests with the value of an update the oldest is settled first, as for a host that answers
 *   them one by one. When the host's cycle ends (it generates the coefficients), the newest of them counts as
 *   answered too, since a host that answers only the last sends nothing more; but not with a host that was
 * seen to answer each.
 * - An answer to a request that is older than the host's last own update goes to the plug-in all the same,
 *   which has another value since, unless a request that is newer than that update waits: the host will end
 *   with the value of that one, and the plug-in has it.
 * - When kCapacity requests wait, further ones are not kept, and their answers go to the plug-in as any
 * update does. When the next cycle of the host begins with none of those that are kept, they are forgotten.
 *
 * Threads: any; nothing allocates, locks or waits. A request that is made in the very moment of an update
 * counts as the newer of the two.
 */
class CPluginParameter
{
public:
    CPluginParameter() noexcept;

    static constexpr std::uint8_t kCapacity = 28;
    /** How far an answer may be from its request: the host's arithmetic is not ours. Normalized. */
    static constexpr double kTolerance = 1e-6;

    /**
     * The host is going to be asked for a value that the plug-in has.
     * @return what `TakeBack` knows it by; nothing when it is not kept.
     */
    std::optional<std::uint32_t> NoteRequest(double inNormalized) noexcept;
    /** The host refused the request, and so will not answer it. */
    void TakeBack(std::optional<std::uint32_t> inRequest) noexcept;

    /**
     * The host updates the value.
     * @param inCycle   rises with each of the host's cycles.
     * @return whether that is an answer, which the plug-in is not to be given.
     */
    bool Settle(double inNormalized, std::uint32_t inCycle) noexcept
    {
        mHasNewerValue.store(true, std::memory_order_relaxed);
        const SWaiting waiting = mWaiting.load(std::memory_order_acquire);
        return waiting.count != 0 && SettleWaiting(waiting, inNormalized, inCycle); // mostly none waits
    }

    /** The host gives the plug-in a value by another way than an update. */
    void NoteUpdate() noexcept;

    /** Whether the plug-in was given or has reported a value since it was loaded. */
    bool HasNewerValue() const noexcept { return mHasNewerValue.load(std::memory_order_relaxed); }

private:
    /** The requests that wait, as counts of the newest ones made; changes as a whole. */
    struct alignas(8) SWaiting
    {
        std::uint32_t made = 0;       // ever; the number of the next one
        std::uint8_t count = 0;       // wait to be answered
        std::uint8_t sinceUpdate = 0; // of these: made after the host's last own update
        std::uint8_t behindAnswer =
            0; // of these: made after the newest one with the value of the last answer
        std::uint8_t habit = kHabitUnseen; // which of several requests the host answers
    };
    static constexpr std::uint8_t kHabitUnseen = 0;
    static constexpr std::uint8_t kAnswersEach = 1;
    static constexpr std::uint8_t kSkipsSome = 2;                      // for good
    static_assert(std::has_unique_object_representations_v<SWaiting>); // it is compared as bytes
    static_assert(std::atomic<SWaiting>::is_always_lock_free);

    /** Places among the waiting requests, 0 for the oldest. */
    struct SMatch
    {
        std::uint8_t oldest = kCapacity; // no match
        std::uint8_t newest = kCapacity;
    };

    bool SettleWaiting(SWaiting inBefore, double inNormalized, std::uint32_t inCycle) noexcept;
    SMatch Find(const SWaiting& inWaiting, double inNormalized) const noexcept;
    static void BeginCycle(SWaiting& ioWaiting) noexcept;
    static bool TakeAnswer(SWaiting& ioWaiting, const SMatch& inAnswered) noexcept;

    std::atomic<SWaiting> mWaiting{};
    std::atomic<std::uint32_t> mCycle{0}; // of the host's last update while requests waited
    std::atomic<bool> mHasNewerValue{false};
    std::array<std::atomic<std::uint32_t>, kCapacity> mRequests; // a value and the low bits of its number
};
static_assert(sizeof(CPluginParameter) <= 128);
