#pragma once
#include "Interfaces/AAX/AAX_IACFHost.h"
#include "Interfaces/AAX/AAX_IAutomationDelegate.h"
#include "Interfaces/ACF/ACFPtr.h"

/** The host's automation of one instance; every call without it answers kAAX_ErrorNullObject. */
class AAX_VAutomationDelegate final : public AAX_IAutomationDelegate
{
public:
    explicit AAX_VAutomationDelegate(IACFUnknown* inHostContext); // may be null

    AAX_Result RegisterParameter(AAX_CParamID inId) override;
    AAX_Result UnregisterParameter(AAX_CParamID inId) override;
    AAX_Result PostSetValueRequest(AAX_CParamID inId, double inNormalizedValue) const override;
    AAX_Result PostCurrentValue(AAX_CParamID inId, double inNormalizedValue) const override;
    AAX_Result PostTouchRequest(AAX_CParamID inId) override;
    AAX_Result PostReleaseRequest(AAX_CParamID inId) override;
    AAX_Result GetTouchState(AAX_CParamID inId, AAX_CBoolean* outTouched) override;

private:
    ACFPtr<AAX_IACFAutomationDelegate> mDelegate;
};
