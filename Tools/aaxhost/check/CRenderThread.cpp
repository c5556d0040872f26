#include "Tools/aaxhost/check/CRenderThread.h"

CRenderThread::CRenderThread(std::function<void()> inRenderBlock)
    : mRenderBlock(std::move(inRenderBlock)),
      mThread(
          [this]
          {
              while (mGoesOn.load(std::memory_order_acquire))
              {
                  mRenderBlock();
                  mBlocksDone.fetch_add(1, std::memory_order_release);
              }
          })
{
    WaitForBlocks(1);
}

void CRenderThread::WaitForBlocks(std::int64_t inCount) const
{
    // A plug-in that hangs in a block hangs this, too: the check's time limit ends both.
    const std::int64_t enough = mBlocksDone.load(std::memory_order_acquire) + inCount;
    while (mBlocksDone.load(std::memory_order_acquire) < enough)
        std::this_thread::yield();
}

void CRenderThread::Stop()
{
    mGoesOn.store(false, std::memory_order_release);
    if (mThread.joinable())
        mThread.join();
}
