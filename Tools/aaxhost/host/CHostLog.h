#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "Interfaces/ACF/ACFTypes.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

/**
 * What a module calls on the host, one line a call, and which of these calls go wrong on purpose.
 *
 * A line reads `AddName("Gain")`; a call that was made to fail ends in ` = -20004`. A call that fails has no
 * effect on the host. The log must outlive every host object that was made with it.
 *
 * Threads: all operations are safe on any thread.
 */
class CHostLog
{
public:
    CHostLog() = default;
    CHostLog(const CHostLog&) = delete;
    CHostLog& operator=(const CHostLog&) = delete;

    /** Adds a line. @return the result that the call must answer; kAAX_Success unless it was made to fail. */
    AAX_Result Record(std::string_view inName, std::string_view inArguments);
    /** As Record for calls made while rendering: adds a line only after `RecordRenderCalls(true)`.
     * Allocates nothing and takes no lock unless that was asked for or a call was made to fail. */
    AAX_Result RecordRender(std::string_view inName) noexcept;
    void RecordRenderCalls(bool inRecord);

    /** Makes the nth call of that name from now answer `inResult`; 1 is the next one, 0 all of them. */
    void FailCall(std::string_view inName, int inNth, AAX_Result inResult);
    /** What the host does inside each call of that name, before it answers; replaces what was set before. */
    void InsideCall(std::string_view inName, std::function<void()> inDo);
    /** From now on neither a query nor the component factory gives this interface or component. */
    void SwitchOff(const acfUID& inId);
    bool Offers(const acfUID& inId) const;

    /** Every line in the order of the calls. */
    std::vector<std::string> Lines() const;
    /** The lines without those of QueryInterface and CreateComponent. */
    std::vector<std::string> Calls() const;
    /** How many lines are calls of that name. */
    std::size_t Count(std::string_view inName) const;
    /** The lines since the last time, which are forgotten with that. */
    std::vector<std::string> TakeLines();
    /** Forgets the lines; faults and interfaces stay as they are. */
    void Clear();

    /** Objects that the module had the host make and has not given back. */
    int LiveObjects() const;
    void ObjectMade();
    void ObjectGone();

private:
    struct SFault
    {
        std::string mName;
        int mCallsLeft = 0; // 0: every call
        AAX_Result mResult = kAAX_Success;
    };

    AAX_Result TakeFault(std::string_view inName) noexcept;
    void AddLine(std::string_view inName, std::string_view inArguments, AAX_Result inResult);

    mutable std::mutex mMutex;
    std::vector<std::string> mLines;
    std::vector<SFault> mFaults;
    std::string mCallName;
    std::function<void()> mInsideCall;
    std::vector<acfUID> mSwitchedOff;
    bool mRecordRender = false;
    // Any thread writes it under the lock, the render thread reads it.
    std::atomic<bool> mRenderTakesLock = false;
    int mLiveObjects = 0;
};
