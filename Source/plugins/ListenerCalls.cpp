#include "Source/plugins/ListenerCalls.h"

#include <chrono>

CListenerCalls::CCall::CCall(CListenerCalls& ioCalls) noexcept
    : mCount(ioCalls.IsListenerThread() ? nullptr : &ioCalls.mCount)
{
    if (mCount != nullptr)
        mCount->fetch_add(1);
}

CListenerCalls::CCall::~CCall()
{
    if (mCount != nullptr)
        mCount->fetch_sub(1);
}

void CListenerCalls::Await() const noexcept
{
    // Only so long: a host may let a call of another thread wait for this one.
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (mCount.load() != 0 && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
}
