#include "Tools/aaxhost/host/CHostAutomation.h"

#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CInstanceHost.h"
#include "Tools/aaxhost/host/HostNames.h"

#include <fmt/format.h>

CHostAutomation::CHostAutomation(CHostLog& inLog, CInstanceHost& inOwner) : mLog(inLog), mOwner(inOwner) {}

std::size_t CHostAutomation::Deliver(AAX_IACFEffectParameters& inParameters)
{
    std::vector<SRequest> requests;
    {
        const std::lock_guard lock(mMutex);
        requests.swap(mRequests);
    }
    for (const SRequest& request : requests)
    {
        // What the module answers changes nothing for the requests after it.
        if (request.mKind == ERequest::Value)
            (void)inParameters.UpdateParameterNormalizedValue(request.mID.c_str(), request.mValue, 0);
        else
            (void)inParameters.UpdateParameterTouch(request.mID.c_str(), request.mKind == ERequest::Touch);
    }
    return requests.size();
}

std::size_t CHostAutomation::PendingRequests() const
{
    const std::lock_guard lock(mMutex);
    return mRequests.size();
}

bool CHostAutomation::IsRegistered(const std::string& inID) const
{
    const std::lock_guard lock(mMutex);
    return mRegistered.contains(inID);
}

bool CHostAutomation::IsTouched(const std::string& inID) const
{
    const std::lock_guard lock(mMutex);
    return mTouched.contains(inID);
}

std::map<std::string, double> CHostAutomation::CurrentValues() const
{
    const std::lock_guard lock(mMutex);
    return mCurrentValues;
}

ACFRESULT CHostAutomation::QueryInterface(const acfIID& iid, void** out)
{
    return mOwner.QueryInterface(iid, out);
}

acfUInt32 CHostAutomation::AddRef() { return mOwner.AddRef(); }

acfUInt32 CHostAutomation::Release() { return mOwner.Release(); }

AAX_Result CHostAutomation::RegisterParameter(AAX_CParamID id)
{
    if (const AAX_Result fault = mLog.Record("RegisterParameter", Quoted(id)))
        return fault;
    if (id == nullptr)
        return kAAX_ErrorNullArgument;
    const std::lock_guard lock(mMutex);
    mRegistered.insert(id);
    return kAAX_Success;
}

AAX_Result CHostAutomation::UnregisterParameter(AAX_CParamID id)
{
    if (const AAX_Result fault = mLog.Record("UnregisterParameter", Quoted(id)))
        return fault;
    if (id == nullptr)
        return kAAX_ErrorNullArgument;
    const std::lock_guard lock(mMutex);
    mRegistered.erase(id);
    return kAAX_Success;
}

AAX_Result CHostAutomation::PostSetValueRequest(AAX_CParamID id, double normalizedValue) const
{
    if (const AAX_Result fault =
            mLog.Record("PostSetValueRequest", fmt::format("{}, {}", Quoted(id), normalizedValue)))
        return fault;
    if (id == nullptr)
        return kAAX_ErrorNullArgument;
    const std::lock_guard lock(mMutex);
    mRequests.push_back({ERequest::Value, id, normalizedValue});
    return kAAX_Success;
}

AAX_Result CHostAutomation::PostCurrentValue(AAX_CParamID id, double normalizedValue) const
{
    if (const AAX_Result fault =
            mLog.Record("PostCurrentValue", fmt::format("{}, {}", Quoted(id), normalizedValue)))
        return fault;
    if (id == nullptr)
        return kAAX_ErrorNullArgument;
    const std::lock_guard lock(mMutex);
    mCurrentValues[id] = normalizedValue;
    return kAAX_Success;
}

AAX_Result CHostAutomation::PostTouchRequest(AAX_CParamID id)
{
    return PostTouch("PostTouchRequest", id, true);
}

AAX_Result CHostAutomation::PostReleaseRequest(AAX_CParamID id)
{
    return PostTouch("PostReleaseRequest", id, false);
}

AAX_Result CHostAutomation::PostTouch(const char* inName, AAX_CParamID inID, bool inTouched)
{
    if (const AAX_Result fault = mLog.Record(inName, Quoted(inID)))
        return fault;
    if (inID == nullptr)
        return kAAX_ErrorNullArgument;
    const std::lock_guard lock(mMutex);
    if (inTouched)
        mTouched.insert(inID);
    else
        mTouched.erase(inID);
    mRequests.push_back({inTouched ? ERequest::Touch : ERequest::Release, inID, 0.0});
    return kAAX_Success;
}

AAX_Result CHostAutomation::GetTouchState(AAX_CParamID id, AAX_CBoolean* touched)
{
    if (const AAX_Result fault = mLog.Record("GetTouchState", Quoted(id)))
        return fault;
    if (id == nullptr || touched == nullptr)
        return kAAX_ErrorNullArgument;
    *touched = IsTouched(id) ? 1 : 0;
    return kAAX_Success;
}
