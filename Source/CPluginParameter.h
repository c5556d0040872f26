#pragma once
#include <algorithm>
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
 * the value of one of them settles that one, the oldest of several, and those before it.
 *
 * Late: an answer is late when the host has sent a value of its own since the request. The late answer to
 * the newest request goes to the plug-in. Late answers to older requests do not: the host will end with the
 * newest value, and a plug-in that reports whatever it is given would go on for ever.
 *
 * Unanswered: a host may leave requests out, and what was taken for the answer to one may have been its own.
 * When nothing was asked or answered for kQuietBeats beats of a timer, what waits is forgotten, and the
 * plug-in gets the value that the host gave last.
 *
 * Full: while kCapacity requests wait, what the plug-in reports is put off, and the host is asked once, when
 * they are settled, for the value that it has by then. Requests beyond kCapacity, which a load may make, are
 * not kept, and their answers go to the plug-in as any update does.
 *
 * Threads: any; nothing allocates, locks or waits. A request that is made in the very moment of an update
 * counts as the newer of the two.
 */
class CPluginParameter
{
public:
    CPluginParameter() noexcept;

    static constexpr std::uint16_t kCapacity = 28;
    static constexpr int kQuietBeats = 8;
    /** How far an answer may be from its request: the host's arithmetic is not ours. Normalized. */
    static constexpr double kTolerance = 1e-6;

    /**
     * The host is going to be asked for a value that the plug-in has.
     * @return what `TakeBack` knows it by; nothing when it is not kept.
     */
    std::optional<std::uint32_t> NoteRequest(double inNormalized) noexcept;
    /** The host refused the request, and so will not answer it. */
    void TakeBack(std::optional<std::uint32_t> inRequest) noexcept;

    /** The host updates the value. @return whether that is an answer, which the plug-in is not to be given.
     */
    bool Settle(double inNormalized) noexcept
    {
        mHasNewerValue.store(true, std::memory_order_relaxed);
        const SWaiting waiting = mWaiting.load(std::memory_order_acquire);
        return waiting.mCount != 0 && SettleWaiting(waiting, inNormalized); // mostly none waits
    }
    /** The host gives the plug-in a value by another way than an update. */
    void NoteUpdate() noexcept;

    /** Whether a report of the plug-in is put off. */
    bool PutsOff() noexcept;
    /** Whether the host is to be asked now for what was put off. */
    bool TakePutOff() noexcept
    {
        return mHasPutOff.load(std::memory_order_relaxed) && !IsWaiting() &&
               mHasPutOff.exchange(false, std::memory_order_relaxed);
    }
    /** A beat of the timer. @return what the plug-in is to be given: the host's last value, normalized. */
    std::optional<float> TimerBeat() noexcept;
    bool IsWaiting() const noexcept { return mWaiting.load(std::memory_order_acquire).mCount != 0; }

    /** What a host is asked for: the nearer end for a value outside of 0 to 1, and 0 for no number. */
    static double AsRequested(double inValue) noexcept
    {
        return inValue > 0.0 ? std::min(inValue, 1.0) : 0.0;
    }

    /** Whether the plug-in was given or has reported a value since it was loaded. */
    bool HasNewerValue() const noexcept { return mHasNewerValue.load(std::memory_order_relaxed); }

private:
    /** The requests that wait, as counts of the newest ones made; changes as a whole. */
    struct alignas(8) SWaiting
    {
        std::uint32_t mMade = 0;        // ever; the number of the next one
        std::uint16_t mCount = 0;       // wait to be answered
        std::uint16_t mSinceUpdate = 0; // of these: made after the host's last own update
    };
    static_assert(std::has_unique_object_representations_v<SWaiting>); // it is compared as bytes
    static_assert(std::atomic<SWaiting>::is_always_lock_free);

    bool SettleWaiting(SWaiting inBefore, double inNormalized) noexcept;
    /** @return its place among those that wait, 0 for the oldest; none when there is no such request. */
    std::optional<std::uint16_t> Find(const SWaiting& inWaiting, double inNormalized) const noexcept;
    /** Has `inChange` make the next state of the present one; it is called again where another thread was
     * first.
     * @return the state before. */
    template <class Change>
    SWaiting ChangeWaiting(Change inChange) noexcept;

    // Every change reads the newest state (acquire) and hands on what its thread has done (release).
    std::atomic<SWaiting> mWaiting{};
    std::atomic<float> mLastAnswer{0.0F}; // normalized; goes with mIsOwed
    // Requests wait behind one that was answered: stored (release) after mLastAnswer, taken (acquire) before.
    std::atomic<bool> mIsOwed{false};
    // No other memory hangs on the next three.
    std::atomic<bool> mHasNewerValue{false};
    std::atomic<bool> mHasPutOff{false};
    std::atomic<std::uint8_t> mQuietBeats{0};
    // A value and the low bits of its number: stored (release) ahead of the host's question, loaded (acquire)
    // for its answer. One that is of another number is not looked at.
    std::array<std::atomic<std::uint32_t>, kCapacity> mRequests;
};
