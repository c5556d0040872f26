#include "Source/features/CGestures.h"

#include "Libs/AAXLibrary/source/AAX_CallHost.h"
#include "Source/CPluginParameter.h"
#include "Source/ParameterId.h"

void CGestures::Attach(AAX_IAutomationDelegate& inHost, std::size_t inParameters)
{
    mParameters = std::make_unique<SParameter[]>(inParameters);
    mCount = inParameters;
    mHost = &inHost;
}

CGestures::SParameter* CGestures::Find(long inIndex) const noexcept
{
    const auto index = static_cast<std::size_t>(inIndex);
    return inIndex >= 0 && index < mCount ? &mParameters[index] : nullptr;
}

void CGestures::Begin(long inIndex)
{
    SParameter* const parameter = Find(inIndex);
    if (parameter != nullptr && !parameter->mIsInGesture.exchange(true))
        (void)PostTouchRequest(CParameterId(inIndex).Get()); // a host that refuses still gets the values
}

void CGestures::End(long inIndex)
{
    SParameter* const parameter = Find(inIndex);
    if (parameter != nullptr && parameter->mIsInGesture.exchange(false))
        (void)PostReleaseRequest(CParameterId(inIndex).Get());
}

void CGestures::EndAll()
{
    for (std::size_t i = 0; i < mCount; ++i)
        End(static_cast<long>(i));
}

void CGestures::NoteKnown(long inIndex, float inValue) noexcept
{
    if (SParameter* const parameter = Find(inIndex))
        parameter->mKnown.store(inValue, std::memory_order_relaxed);
}

bool CGestures::IsKnown(long inIndex, float inValue) const noexcept
{
    const SParameter* const parameter = Find(inIndex);
    const auto requested = static_cast<float>(CPluginParameter::AsRequested(static_cast<double>(inValue)));
    return parameter != nullptr && parameter->mKnown.load(std::memory_order_relaxed) == requested;
}

AAX_Result CGestures::PostTouchRequest(AAX_CParamID inId)
{
    SParameter* const parameter = Find(ParameterIndexFromId(inId));
    if (parameter != nullptr && parameter->mHolders.fetch_add(1) > 0)
        return kAAX_Success;
    return AAX_CallHost(mHost, &AAX_IAutomationDelegate::PostTouchRequest, inId);
}

AAX_Result CGestures::PostReleaseRequest(AAX_CParamID inId)
{
    if (SParameter* const parameter = Find(ParameterIndexFromId(inId)))
    {
        int holders = parameter->mHolders.load();
        while (holders > 0 && !parameter->mHolders.compare_exchange_weak(holders, holders - 1))
        {
        }
        if (holders > 1)
            return kAAX_Success;
    }
    return AAX_CallHost(mHost, &AAX_IAutomationDelegate::PostReleaseRequest, inId);
}

AAX_Result CGestures::PostSetValueRequest(AAX_CParamID inId, double inNormalizedValue) const
{
    // Ahead of the answer, which may come at once and be another value.
    SParameter* const parameter = Find(ParameterIndexFromId(inId));
    const float before =
        parameter != nullptr ? parameter->mKnown.exchange(static_cast<float>(inNormalizedValue)) : 0.0F;
    const AAX_Result result =
        AAX_CallHost(mHost, &AAX_IAutomationDelegate::PostSetValueRequest, inId, inNormalizedValue);
    if (parameter != nullptr && result != kAAX_Success)
        parameter->mKnown.store(before);
    return result;
}
