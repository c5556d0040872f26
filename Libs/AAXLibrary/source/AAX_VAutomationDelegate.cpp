#include "Libs/AAXLibrary/source/AAX_VAutomationDelegate.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_CallHost.h"

AAX_VAutomationDelegate::AAX_VAutomationDelegate(IACFUnknown* inHostContext)
    : mDelegate(ACFPtr<AAX_IACFAutomationDelegate>::Query(inHostContext, IID_IAAXAutomationDelegateV1))
{
}

AAX_Result AAX_VAutomationDelegate::RegisterParameter(AAX_CParamID inId)
{
    return AAX_CallHost(mDelegate.Get(), &AAX_IACFAutomationDelegate::RegisterParameter, inId);
}

AAX_Result AAX_VAutomationDelegate::UnregisterParameter(AAX_CParamID inId)
{
    return AAX_CallHost(mDelegate.Get(), &AAX_IACFAutomationDelegate::UnregisterParameter, inId);
}

AAX_Result AAX_VAutomationDelegate::PostSetValueRequest(AAX_CParamID inId, double inNormalizedValue) const
{
    return AAX_CallHost(mDelegate.Get(), &AAX_IACFAutomationDelegate::PostSetValueRequest, inId,
                        inNormalizedValue);
}

AAX_Result AAX_VAutomationDelegate::PostCurrentValue(AAX_CParamID inId, double inNormalizedValue) const
{
    return AAX_CallHost(mDelegate.Get(), &AAX_IACFAutomationDelegate::PostCurrentValue, inId,
                        inNormalizedValue);
}

AAX_Result AAX_VAutomationDelegate::PostTouchRequest(AAX_CParamID inId)
{
    return AAX_CallHost(mDelegate.Get(), &AAX_IACFAutomationDelegate::PostTouchRequest, inId);
}

AAX_Result AAX_VAutomationDelegate::PostReleaseRequest(AAX_CParamID inId)
{
    return AAX_CallHost(mDelegate.Get(), &AAX_IACFAutomationDelegate::PostReleaseRequest, inId);
}

AAX_Result AAX_VAutomationDelegate::GetTouchState(AAX_CParamID inId, AAX_CBoolean* outTouched)
{
    return AAX_CallHost(mDelegate.Get(), &AAX_IACFAutomationDelegate::GetTouchState, inId, outTouched);
}
