#pragma once
#include "Source/CForwardedAutomation.h"
#include "Source/CPluginParameter.h"

#include <span>

/**
 * The host's automation of one instance, with a note of each value of the wrapped plug-in's parameters that
 * it is asked for, and of none that it refuses.
 *
 * Threads: `Attach` and `Detach` while nobody asks; everything else on any.
 */
class CNotedAutomation final : public CForwardedAutomation
{
public:
    /** Neither is owned; both must outlive the parameters that are given this delegate. */
    void Attach(AAX_IAutomationDelegate& inHost, std::span<CPluginParameter> inParameters) noexcept;
    void Detach() noexcept;

    AAX_Result PostSetValueRequest(AAX_CParamID inId, double inNormalizedValue) const override;

private:
    std::span<CPluginParameter> mParameters;
};
