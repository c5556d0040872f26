#include "Source/CNotedAutomation.h"

#include "Libs/AAXLibrary/source/AAX_CallHost.h"
#include "Source/ParameterId.h"

void CNotedAutomation::Attach(AAX_IAutomationDelegate& inHost,
                              std::span<CPluginParameter> inParameters) noexcept
{
    mHost = &inHost;
    mParameters = inParameters;
}

void CNotedAutomation::Detach() noexcept
{
    mHost = nullptr;
    mParameters = {};
}

AAX_Result CNotedAutomation::PostSetValueRequest(AAX_CParamID inId, double inNormalizedValue) const
{
    const long index = ParameterIndexFromId(inId);
    if (index < 0 || index >= std::ssize(mParameters))
        return AAX_CallHost(mHost, &AAX_IAutomationDelegate::PostSetValueRequest, inId, inNormalizedValue);
    CPluginParameter& parameter = mParameters[static_cast<std::size_t>(index)];
    const auto request =
        parameter.NoteRequest(inNormalizedValue); // ahead of the answer, which may come at once
    const AAX_Result result =
        AAX_CallHost(mHost, &AAX_IAutomationDelegate::PostSetValueRequest, inId, inNormalizedValue);
    if (result != kAAX_Success)
        parameter.TakeBack(request);
    return result;
}
