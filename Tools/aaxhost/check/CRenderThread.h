#pragma once
#include <atomic>
#include <cstdint>
#include <functional>
#include <thread>

/**
 * Renders on a thread of its own, block after block, until this object goes or `Stop`.
 *
 * Threads: the main thread makes, waits for and ends it.
 */
class CRenderThread
{
public:
    /** @param inRenderBlock called on that thread only. */
    explicit CRenderThread(std::function<void()> inRenderBlock);
    CRenderThread(const CRenderThread&) = delete;
    CRenderThread& operator=(const CRenderThread&) = delete;
    ~CRenderThread() { Stop(); }

    /** Comes back when so many more blocks have begun and ended: what was done before lies between blocks. */
    void WaitForBlocks(std::int64_t inCount) const;
    std::int64_t BlocksDone() const noexcept { return mBlocksDone.load(std::memory_order_acquire); }
    /** Ends the thread; what it rendered can be looked at from then on. */
    void Stop();

private:
    std::function<void()> mRenderBlock;
    std::atomic<bool> mGoesOn = true;          // the main thread writes, the render thread reads
    std::atomic<std::int64_t> mBlocksDone = 0; // the other way round
    std::thread mThread;                       // the last: it uses the others
};
