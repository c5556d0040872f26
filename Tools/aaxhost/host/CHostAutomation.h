#pragma once
#include "Interfaces/AAX/AAX_IACFEffectParameters.h"
#include "Interfaces/AAX/AAX_IACFHost.h"

#include <cstddef>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

class CHostLog;
class CInstanceHost;

/**
 * The automation of one instance: keeps what the module asks for until the host delivers it.
 *
 * Threads: the module may call from any thread; `Deliver` belongs to the main thread.
 */
class CHostAutomation final : public AAX_IACFAutomationDelegate
{
public:
    CHostAutomation(CHostLog& inLog, CInstanceHost& inOwner); // the owner counts references, answers queries
    CHostAutomation(const CHostAutomation&) = delete;
    CHostAutomation& operator=(const CHostAutomation&) = delete;

    /**
     * Sends what was asked for until now: values as updates, touches and releases as touch updates, each in
     * the order of the requests. Requests made meanwhile wait for the next call.
     * @return how many were sent.
     */
    std::size_t Deliver(AAX_IACFEffectParameters& inParameters);

    /** Requests that wait to be delivered. */
    std::size_t PendingRequests() const;
    bool IsRegistered(const std::string& inID) const;
    bool IsTouched(const std::string& inID) const;
    /** The values that the module reported as current, by identifier. */
    std::map<std::string, double> CurrentValues() const;

    ACFRESULT QueryInterface(const acfIID& iid, void** out) override;
    acfUInt32 AddRef() override;
    acfUInt32 Release() override;
    AAX_Result RegisterParameter(AAX_CParamID id) override;
    AAX_Result UnregisterParameter(AAX_CParamID id) override;
    AAX_Result PostSetValueRequest(AAX_CParamID id, double normalizedValue) const override;
    AAX_Result PostCurrentValue(AAX_CParamID id, double normalizedValue) const override;
    AAX_Result PostTouchRequest(AAX_CParamID id) override;
    AAX_Result PostReleaseRequest(AAX_CParamID id) override;
    AAX_Result GetTouchState(AAX_CParamID id, AAX_CBoolean* touched) override;

private:
    enum class ERequest
    {
        Value,
        Touch,
        Release
    };
    struct SRequest
    {
        ERequest mKind = ERequest::Value;
        std::string mID;
        double mValue = 0.0;
    };

    AAX_Result PostTouch(const char* inName, AAX_CParamID inID, bool inTouched);

    CHostLog& mLog;
    CInstanceHost& mOwner;
    mutable std::mutex mMutex; // guards what follows
    mutable std::vector<SRequest> mRequests;
    mutable std::map<std::string, double> mCurrentValues;
    std::set<std::string> mRegistered;
    std::set<std::string> mTouched;
};
