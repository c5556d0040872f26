#include "Tools/aaxhost/host/CHostLog.h"

#include <algorithm>
#include <utility>

AAX_Result CHostLog::Record(std::string_view inName, std::string_view inArguments)
{
    AAX_Result result = kAAX_Success;
    std::function<void()> meanwhile;
    {
        const std::lock_guard lock(mMutex);
        result = TakeFault(inName);
        AddLine(inName, inArguments, result);
        if (inName == mCallName)
            meanwhile = mInsideCall;
    }
    if (meanwhile)
        meanwhile();
    return result;
}

void CHostLog::InsideCall(std::string_view inName, std::function<void()> inDo)
{
    const std::lock_guard lock(mMutex);
    mCallName = inName;
    mInsideCall = std::move(inDo);
}

AAX_Result CHostLog::RecordRender(std::string_view inName) noexcept
{
    if (!mRenderTakesLock.load(std::memory_order_acquire))
        return kAAX_Success;
    const std::lock_guard lock(mMutex);
    const AAX_Result result = TakeFault(inName);
    if (mRecordRender)
        AddLine(inName, {}, result);
    return result;
}

void CHostLog::RecordRenderCalls(bool inRecord)
{
    const std::lock_guard lock(mMutex);
    mRecordRender = inRecord;
    mRenderTakesLock.store(mRecordRender || !mFaults.empty(), std::memory_order_release);
}

void CHostLog::FailCall(std::string_view inName, int inNth, AAX_Result inResult)
{
    const std::lock_guard lock(mMutex);
    mFaults.push_back({std::string(inName), inNth, inResult});
    mRenderTakesLock.store(true, std::memory_order_release);
}

void CHostLog::SwitchOff(const acfUID& inId)
{
    const std::lock_guard lock(mMutex);
    mSwitchedOff.push_back(inId);
}

bool CHostLog::Offers(const acfUID& inId) const
{
    const std::lock_guard lock(mMutex);
    return std::find(mSwitchedOff.begin(), mSwitchedOff.end(), inId) == mSwitchedOff.end();
}

std::vector<std::string> CHostLog::Lines() const
{
    const std::lock_guard lock(mMutex);
    return mLines;
}

std::vector<std::string> CHostLog::Calls() const
{
    std::vector<std::string> calls = Lines();
    std::erase_if(calls, [](const std::string& line)
                  { return line.starts_with("QueryInterface(") || line.starts_with("CreateComponent("); });
    return calls;
}

std::size_t CHostLog::Count(std::string_view inName) const
{
    const std::lock_guard lock(mMutex);
    return static_cast<std::size_t>(std::count_if(mLines.begin(), mLines.end(),
                                                  [=](const std::string& line) {
                                                      return line.starts_with(inName) &&
                                                             line.substr(inName.size()).starts_with('(');
                                                  }));
}

std::vector<std::string> CHostLog::TakeLines()
{
    const std::lock_guard lock(mMutex);
    return std::exchange(mLines, {});
}

void CHostLog::Clear()
{
    const std::lock_guard lock(mMutex);
    mLines.clear();
}

int CHostLog::LiveObjects() const
{
    const std::lock_guard lock(mMutex);
    return mLiveObjects;
}

void CHostLog::ObjectMade()
{
    const std::lock_guard lock(mMutex);
    ++mLiveObjects;
}

void CHostLog::ObjectGone()
{
    const std::lock_guard lock(mMutex);
    --mLiveObjects;
}

AAX_Result CHostLog::TakeFault(std::string_view inName) noexcept
{
    AAX_Result result = kAAX_Success;
    for (auto fault = mFaults.begin(); fault != mFaults.end();)
    {
        const bool everyCall = fault->mCallsLeft == 0;
        if (fault->mName != inName || (!everyCall && --fault->mCallsLeft > 0))
        {
            ++fault;
            continue;
        }
        if (result == kAAX_Success)
            result = fault->mResult;
        fault = everyCall ? fault + 1 : mFaults.erase(fault);
    }
    return result;
}

void CHostLog::AddLine(std::string_view inName, std::string_view inArguments, AAX_Result inResult)
{
    std::string line(inName);
    line.append("(").append(inArguments).append(")");
    if (inResult != kAAX_Success)
        line.append(" = ").append(std::to_string(inResult));
    mLines.push_back(std::move(line));
}
