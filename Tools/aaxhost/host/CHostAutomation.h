#pragma once
#include "Interfaces/AAX/AAX_IACFEffectParameters.h"
#include "Interfaces/AAX/AAX_IACFHost.h"

#include <atomic>
#include <cstddef>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

class CHostLog;
class CInstanceHost;

/** When a host answers what a module asks of its automation. Hosts do all of these. */
enum class EAnswers
{
    AtOnce, // inside the request, on the thread that asks
    Late,   // in the host's next cycle, each in the order of the requests
    Last    // as Late, but of the values of one parameter that wait only the newest, in its place
};
inline constexpr EAnswers kAllAnswers[] = {EAnswers::AtOnce, EAnswers::Late, EAnswers::Last};

/**
 * The automation of one instance: keeps what the module asks for until the host delivers it.
 *
 * Threads: the module may call from any thread; `Deliver` and `SetAnswers` belong to the main thread.
 */
class CHostAutomation final : public AAX_IACFAutomationDelegate
{
public:
    CHostAutomation(CHostLog& inLog, CInstanceHost& inOwner); // the owner counts references, answers queries
    CHostAutomation(const CHostAutomation&) = delete;
    CHostAutomation& operator=(const CHostAutomation&) = delete;

    /**
     * From now on; late at first. An answer at once goes to the effect parameters that the owner was given,
     * and waits all the same while there are none, or while kMostNested others are being given: a plug-in
     * that asks for several values inside each answer must come back, and not use up the stack.
     */
    void SetAnswers(EAnswers inAnswers) noexcept { mAnswers.store(inAnswers, std::memory_order_relaxed); }
    EAnswers Answers() const noexcept { return mAnswers.load(std::memory_order_relaxed); }
    static constexpr int kMostNested = 4;

    /**
     * Sends what waits: values as updates, touches and releases as touch updates. Requests made meanwhile
     * wait for the next call.
     * @return how many were sent since the last call, those at once included.
     */
    std::size_t Deliver(AAX_IACFEffectParameters& inParameters);

    /** Requests that wait to be delivered. */
    std::size_t PendingRequests() const;
    /** Values that were ever asked for. */
    std::size_t ValueRequests() const noexcept { return mValueRequests.load(std::memory_order_relaxed); }
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
    /** Answers it or has it wait. Asking for a value is const to the module. */
    void Take(SRequest inRequest) const;
    bool AnswerAtOnce(const SRequest& inRequest) const;
    static void Send(AAX_IACFEffectParameters& inParameters, const SRequest& inRequest);

    CHostLog& mLog;
    CInstanceHost& mOwner;
    std::atomic<EAnswers> mAnswers{EAnswers::Late};
    // Counts for the main thread, whichever threads ask.
    mutable std::atomic<std::size_t> mValueRequests{0};
    mutable std::atomic<std::size_t> mAnsweredAtOnce{0}; // since the last Deliver
    mutable std::atomic<int> mNested{0};                 // answers at once that are being given
    mutable std::mutex mMutex;                           // held for what follows
    mutable std::vector<SRequest> mRequests;
    mutable std::map<std::string, double> mCurrentValues;
    std::set<std::string> mRegistered;
    std::set<std::string> mTouched;
};
