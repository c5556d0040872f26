#include "Tools/aaxhost/host/CHostAutomation.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Interfaces/ACF/ACFPtr.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CInstanceHost.h"
#include "Tools/aaxhost/host/HostNames.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

CHostAutomation::CHostAutomation(CHostLog& inLog, CInstanceHost& inOwner) : mLog(inLog), mOwner(inOwner) {}

std::size_t CHostAutomation::Deliver(AAX_IACFEffectParameters& inParameters)
{
    std::vector<SRequest> requests;
    {
        const std::lock_guard lock(mMutex);
        requests.swap(mRequests);
    }
    if (Answers() == EAnswers::Last)
    {
        std::set<std::string> newer;
        const auto isOutdated = [&](const SRequest& request)
        { return request.mKind == ERequest::Value && !newer.insert(request.mID).second; };
        // Backwards, and what stays moves to the end in its order.
        const auto kept = std::remove_if(requests.rbegin(), requests.rend(), isOutdated);
        requests.erase(requests.begin(), kept.base());
    }
    for (const SRequest& request : requests)
        Send(inParameters, request);
    return requests.size() + mAnsweredAtOnce.exchange(0, std::memory_order_relaxed);
}

void CHostAutomation::Send(AAX_IACFEffectParameters& inParameters, const SRequest& inRequest)
{
    // What the module answers changes nothing for the requests after it.
    if (inRequest.mKind == ERequest::Value)
        (void)inParameters.UpdateParameterNormalizedValue(inRequest.mID.c_str(), inRequest.mValue, 0);
    else
        (void)inParameters.UpdateParameterTouch(inRequest.mID.c_str(), inRequest.mKind == ERequest::Touch);
}

void CHostAutomation::Take(SRequest inRequest) const
{
    if (inRequest.mKind == ERequest::Value)
        mValueRequests.fetch_add(1, std::memory_order_relaxed);
    if (Answers() == EAnswers::AtOnce && AnswerAtOnce(inRequest))
        return;
    const std::lock_guard lock(mMutex);
    mRequests.push_back(std::move(inRequest));
}

bool CHostAutomation::AnswerAtOnce(const SRequest& inRequest) const
{
    const auto parameters =
        ACFPtr<AAX_IACFEffectParameters>::Query(mOwner.EffectParameters(), IID_IAAXEffectParametersV1);
    if (!parameters)
        return false;
    const bool isDeep = mNested.fetch_add(1, std::memory_order_relaxed) >= kMostNested;
    if (!isDeep)
    {
        Send(*parameters.Get(), inRequest);
        mAnsweredAtOnce.fetch_add(1, std::memory_order_relaxed);
    }
    mNested.fetch_sub(1, std::memory_order_relaxed);
    return !isDeep;
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
    Take({ERequest::Value, id, normalizedValue});
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
    {
        const std::lock_guard lock(mMutex);
        if (inTouched)
            mTouched.insert(inID);
        else
            mTouched.erase(inID);
    }
    Take({inTouched ? ERequest::Touch : ERequest::Release, inID, 0.0});
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
