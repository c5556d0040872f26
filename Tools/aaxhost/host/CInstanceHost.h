#pragma once
#include "Tools/aaxhost/host/CHostAutomation.h"
#include "Tools/aaxhost/host/CHostController.h"
#include "Tools/aaxhost/host/CHostTransport.h"
#include "Tools/aaxhost/host/CHostViewContainer.h"

#include <atomic>

class CHostLog;

/**
 * What the host offers to one instance: the object that the effect parameters and the editor are initialised
 * with. A query gives the controller, the automation delegate, the transport, and the effect parameters once
 * they are set.
 *
 * Owned by the caller; the references that the module takes to it and to its interfaces are counted but keep
 * nothing alive.
 *
 * Threads: the main thread, but for what the parts say.
 */
class CInstanceHost final : public IACFUnknown
{
public:
    explicit CInstanceHost(CHostLog& inLog); // must outlive this object
    CInstanceHost(const CInstanceHost&) = delete;
    CInstanceHost& operator=(const CInstanceHost&) = delete;

    IACFUnknown* Unknown() noexcept { return this; }
    CHostController& Controller() noexcept { return mController; }
    CHostAutomation& Automation() noexcept { return mAutomation; }
    CHostTransport& Transport() noexcept { return mTransport; }
    CHostViewContainer& ViewContainer() noexcept { return mViewContainer; }
    /** Not owned; the editor finds it through a query, and it gets the answers that are given at once. Null
     * takes it away again. */
    void SetEffectParameters(IACFUnknown* inParameters) noexcept { mParameters.store(inParameters); }
    /** On any thread. */
    IACFUnknown* EffectParameters() const noexcept { return mParameters.load(); }
    /** Sets the rate of the controller and of the transport, in Hz. */
    void SetSampleRate(double inRate) noexcept;

    /**
     * Answers the requests that wait, then has the coefficients generated once where anything was answered
     * since the last call.
     * @return kAAX_Success, also when nothing was, or what the generation of the coefficients answered.
     */
    AAX_Result DeliverUpdates(AAX_IACFEffectParameters& inParameters);

    /** References to this object and its interfaces, the view container apart, that the module holds. */
    int References() const noexcept { return mReferences; }

    ACFRESULT QueryInterface(const acfIID& iid, void** out) override;
    acfUInt32 AddRef() override;
    acfUInt32 Release() override;

private:
    CHostLog& mLog;
    CHostController mController;
    CHostAutomation mAutomation;
    CHostTransport mTransport;
    CHostViewContainer mViewContainer;
    std::atomic<IACFUnknown*> mParameters{nullptr}; // written on the main thread
    int mReferences = 0;
};
