#pragma once
#include "Interfaces/AAX/AAX_Types.h"

/**
 * A parameter's way to the host's automation. The order of the declarations is the order of the slots.
 *
 * Values are normalized, 0 to 1. A request changes nothing by itself: the host decides and calls the
 * instance's update operations back, at once or later.
 */
class AAX_IAutomationDelegate
{
public:
    virtual ~AAX_IAutomationDelegate() = default;
    virtual AAX_Result RegisterParameter(AAX_CParamID id) = 0;
    virtual AAX_Result UnregisterParameter(AAX_CParamID id) = 0;
    virtual AAX_Result PostSetValueRequest(AAX_CParamID id, double normalizedValue) const = 0;
    virtual AAX_Result PostCurrentValue(AAX_CParamID id, double normalizedValue) const = 0;
    virtual AAX_Result PostTouchRequest(AAX_CParamID id) = 0;
    virtual AAX_Result PostReleaseRequest(AAX_CParamID id) = 0;
    virtual AAX_Result GetTouchState(AAX_CParamID id, AAX_CBoolean* touched) = 0;
};
