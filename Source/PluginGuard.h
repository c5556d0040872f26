#pragma once
#include "Interfaces/AAX/AAX_Types.h"

#include <atomic>

/** Guards around calls that reach the wrapped plug-in. */

/** Runs a host-facing call; an exception of the plug-in becomes kAAX_ErrorNullObject. */
template <class Call>
AAX_Result GuardedFromPlugin(Call inCall) noexcept
{
    try
    {
        return inCall();
    }
    catch (...)
    {
        return kAAX_ErrorNullObject;
    }
}

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
