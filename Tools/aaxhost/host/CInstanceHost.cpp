#include "Tools/aaxhost/host/CInstanceHost.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/HostNames.h"

CInstanceHost::CInstanceHost(CHostLog& inLog)
    : mLog(inLog),
      mController(inLog, *this),
      mAutomation(inLog, *this),
      mTransport(inLog, this),
      mViewContainer(inLog)
{
}

void CInstanceHost::SetSampleRate(double inRate) noexcept
{
    mController.State().mSampleRate = static_cast<float>(inRate);
    mTransport.State().mSampleRate = inRate;
}

AAX_Result CInstanceHost::DeliverUpdates(AAX_IACFEffectParameters& inParameters)
{
    return mAutomation.Deliver(inParameters) > 0 ? inParameters.GenerateCoefficients() : kAAX_Success;
}

ACFRESULT CInstanceHost::QueryInterface(const acfIID& iid, void** out)
{
    if (out == nullptr)
        return ACF_E_POINTER;
    *out = nullptr;
    if (const ACFRESULT fault = mLog.Record("QueryInterface", NameOfUid(iid)))
        return fault;
    if (!mLog.Offers(iid))
        return ACF_E_NOINTERFACE;
    if (iid == IID_IACFUnknown)
        *out = static_cast<IACFUnknown*>(this);
    else if (iid == IID_IAAXControllerV1 || iid == IID_IAAXControllerV2)
        *out = static_cast<AAX_IACFController_V2*>(&mController);
    else if (iid == IID_IAAXAutomationDelegateV1)
        *out = static_cast<AAX_IACFAutomationDelegate*>(&mAutomation);
    else if (iid == IID_IAAXTransportV1 || iid == IID_IAAXTransportV2)
        *out = static_cast<AAX_IACFTransport_V2*>(&mTransport);
    else if (IACFUnknown* const parameters = EffectParameters())
        return parameters->QueryInterface(iid, out);
    else
        return ACF_E_NOINTERFACE;
    AddRef();
    return ACF_OK;
}

acfUInt32 CInstanceHost::AddRef() { return static_cast<acfUInt32>(++mReferences); }

acfUInt32 CInstanceHost::Release() { return static_cast<acfUInt32>(--mReferences); }
