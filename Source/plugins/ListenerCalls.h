#pragma once
#include <atomic>
#include <cstdint>
#include <thread>

/**
 * The calls that host callbacks make to listeners, which come on any thread, so that the listeners' own
 * thread can take a listener back and destroy it.
 *
 * Two stores pair with two loads here, all in one order (sequentially consistent). A caller stores the count
 * and then loads the listener. `Replace` stores the listener and then loads the count. Whichever of the two
 * stores comes second, the load behind it sees the other one. So a caller finds the new listener, or it is
 * counted and waited for.
 */
class CListenerCalls
{
public:
    /** Counts, while it lives, a call to a listener, which is loaded after it is made and sequentially
     * consistent; not on the listeners' own thread, which never waits for itself. */
    class CCall
    {
    public:
        explicit CCall(CListenerCalls& ioCalls) noexcept
            : mCount(ioCalls.IsListenerThread() ? nullptr : &ioCalls.mCount)
        {
            if (mCount != nullptr)
                mCount->fetch_add(1);
        }
        CCall(const CCall&) = delete;
        CCall& operator=(const CCall&) = delete;
        ~CCall()
        {
            if (mCount != nullptr)
                mCount->fetch_sub(1);
        }

    private:
        std::atomic<std::int32_t>* mCount = nullptr;
    };

    /** The listener before is not called any more when this returns: calls that other threads are making are
     * waited for, though not for ever. The calling thread is the listeners' from now on. */
    template <class Listener>
    void Replace(std::atomic<Listener*>& ioListener, Listener* inListener) noexcept
    {
        mThread.store(std::this_thread::get_id());
        ioListener.store(inListener);
        Await();
    }
    bool IsListenerThread() const noexcept { return mThread.load() == std::this_thread::get_id(); }

private:
    void Await() const noexcept;

    std::atomic<std::thread::id> mThread{}; // `Replace` writes, callers read
    std::atomic<std::int32_t> mCount = 0;   // callers write, `Replace` reads
};
