#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "Interfaces/ACF/ACFInterfaces.h"

class AAX_IString;

/** An instance's editor as the host drives it. The order of the declarations is the order of the slots. */
class AAX_IACFEffectGUI : public IACFUnknown
{
public:
    virtual AAX_Result Initialize(IACFUnknown* controller) = 0;
    virtual AAX_Result Uninitialize() = 0;
    virtual AAX_Result NotificationReceived(AAX_CTypeID type, const void* data, std::uint32_t size) = 0;
    virtual AAX_Result SetViewContainer(IACFUnknown* container) = 0;
    virtual AAX_Result GetViewSize(AAX_Point* size) const = 0;
    virtual AAX_Result Draw(AAX_Rect* rect) = 0;
    virtual AAX_Result TimerWakeup() = 0;
    virtual AAX_Result ParameterUpdated(AAX_CParamID id) = 0;
    virtual AAX_Result GetCustomLabel(std::int32_t which, AAX_IString* text) const = 0;
    virtual AAX_Result SetControlHighlightInfo(AAX_CParamID id, AAX_CBoolean on, std::int32_t colour) = 0;
};
