#pragma once
#include "Interfaces/AAX/AAX_IAutomationDelegate.h"

/**
 * The host's automation, as it is: what stands between it and an instance's parameters changes some of it.
 * Without a host every call fails with kAAX_ErrorNullObject.
 */
class CForwardedAutomation : public AAX_IAutomationDelegate
{
public:
    AAX_Result RegisterParameter(AAX_CParamID inId) override;
    AAX_Result UnregisterParameter(AAX_CParamID inId) override;
    AAX_Result PostSetValueRequest(AAX_CParamID inId, double inNormalizedValue) const override;
    AAX_Result PostCurrentValue(AAX_CParamID inId, double inNormalizedValue) const override;
    AAX_Result PostTouchRequest(AAX_CParamID inId) override;
    AAX_Result PostReleaseRequest(AAX_CParamID inId) override;
    AAX_Result GetTouchState(AAX_CParamID inId, AAX_CBoolean* outTouched) override;

protected:
    AAX_IAutomationDelegate* mHost = nullptr; // not owned
};
