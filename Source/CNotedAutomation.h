#pragma once
#include "Interfaces/AAX/AAX_IAutomationDelegate.h"
#include "Source/CPluginParameter.h"

#include <span>

/**
 * The host's automation of one instance, with a note of each value of the wrapped plug-in's parameters that
 * it is asked for, and of none that it refuses.
 *
 * Threads: `Attach` and `Detach` while nobody asks; everything else on any.
 */
class CNotedAutomation final : public AAX_IAutomationDelegate
{
public:
    /** Neither is owned; both must outlive the parameters that are given this delegate. */
    void Attach(AAX_IAutomationDelegate& inHost, std::span<CPluginParameter> inParameters) noexcept;
    void Detach() noexcept;

    AAX_Result RegisterParameter(AAX_CParamID inId) override;
    AAX_Result UnregisterParameter(AAX_CParamID inId) override;
    AAX_Result PostSetValueRequest(AAX_CParamID inId, double inNormalizedValue) const override;
    AAX_Result PostCurrentValue(AAX_CParamID inId, double inNormalizedValue) const override;
    AAX_Result PostTouchRequest(AAX_CParamID inId) override;
    AAX_Result PostReleaseRequest(AAX_CParamID inId) override;
    AAX_Result GetTouchState(AAX_CParamID inId, AAX_CBoolean* outTouched) override;

private:
    AAX_IAutomationDelegate* mHost = nullptr;
    std::span<CPluginParameter> mParameters;
};
