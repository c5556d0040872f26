#pragma once
#include "Interfaces/AAX/AAX_IACFEffectParameters.h"
#include "Interfaces/AAX/AAX_IACFHost.h"
#include "Interfaces/AAX/AAX_IEffectGUI.h"
#include "Interfaces/ACF/ACFPtr.h"

class CDirectEffect;

/** The editor of a plug-in called directly, in the host's window. Threads: the main thread. */
class CDirectEditor final : public AAX_IEffectGUI
{
public:
    AAX_Result Initialize(IACFUnknown* controller) override;
    AAX_Result Uninitialize() override;
    AAX_Result NotificationReceived(AAX_CTypeID type, const void* data, std::uint32_t size) override;
    AAX_Result SetViewContainer(IACFUnknown* container) override;
    AAX_Result GetViewSize(AAX_Point* size) const override;
    AAX_Result Draw(AAX_Rect* rect) override;
    AAX_Result TimerWakeup() override;
    AAX_Result ParameterUpdated(AAX_CParamID id) override;
    AAX_Result GetCustomLabel(std::int32_t which, AAX_IString* text) const override;
    AAX_Result SetControlHighlightInfo(AAX_CParamID id, AAX_CBoolean on, std::int32_t colour) override;

private:
    ACFPtr<AAX_IACFEffectParameters> mParameters; // holds the effect
    CDirectEffect* mEffect = nullptr;
    ACFPtr<AAX_IACFViewContainer> mContainer; // while the editor is open
};
