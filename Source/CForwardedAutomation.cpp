#include "Source/CForwardedAutomation.h"

#include "Libs/AAXLibrary/source/AAX_CallHost.h"

AAX_Result CForwardedAutomation::RegisterParameter(AAX_CParamID inId)
{
    return AAX_CallHost(mHost, &AAX_IAutomationDelegate::RegisterParameter, inId);
}

AAX_Result CForwardedAutomation::UnregisterParameter(AAX_CParamID inId)
{
    return AAX_CallHost(mHost, &AAX_IAutomationDelegate::UnregisterParameter, inId);
}

AAX_Result CForwardedAutomation::PostSetValueRequest(AAX_CParamID inId, double inNormalizedValue) const
{
    return AAX_CallHost(mHost, &AAX_IAutomationDelegate::PostSetValueRequest, inId, inNormalizedValue);
}

AAX_Result CForwardedAutomation::PostCurrentValue(AAX_CParamID inId, double inNormalizedValue) const
{
    return AAX_CallHost(mHost, &AAX_IAutomationDelegate::PostCurrentValue, inId, inNormalizedValue);
}

AAX_Result CForwardedAutomation::PostTouchRequest(AAX_CParamID inId)
{
    return AAX_CallHost(mHost, &AAX_IAutomationDelegate::PostTouchRequest, inId);
}

AAX_Result CForwardedAutomation::PostReleaseRequest(AAX_CParamID inId)
{
    return AAX_CallHost(mHost, &AAX_IAutomationDelegate::PostReleaseRequest, inId);
}

AAX_Result CForwardedAutomation::GetTouchState(AAX_CParamID inId, AAX_CBoolean* outTouched)
{
    return AAX_CallHost(mHost, &AAX_IAutomationDelegate::GetTouchState, inId, outTouched);
}
