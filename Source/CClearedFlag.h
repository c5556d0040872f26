#pragma once
#include <atomic>

/** A flag that is false while this object lives. */
class CClearedFlag
{
public:
    explicit CClearedFlag(std::atomic<bool>& ioFlag) noexcept : mFlag(ioFlag)
    {
        mFlag.store(false, std::memory_order_release);
    }
    CClearedFlag(const CClearedFlag&) = delete;
    CClearedFlag& operator=(const CClearedFlag&) = delete;
    ~CClearedFlag() { mFlag.store(true, std::memory_order_release); }

private:
    std::atomic<bool>& mFlag;
};
