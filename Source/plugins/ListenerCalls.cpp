#include "Source/plugins/ListenerCalls.h"

#include <chrono>

void CListenerCalls::Await() const noexcept
{
    // Only so long: a host may let a call of another thread wait for this one.
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (mCount.load() != 0 && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
}
