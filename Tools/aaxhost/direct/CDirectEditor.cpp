#include "Tools/aaxhost/direct/CDirectEditor.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Tools/aaxhost/direct/CDirectEffect.h"

AAX_Result CDirectEditor::Initialize(IACFUnknown* controller)
{
    mParameters = ACFPtr<AAX_IACFEffectParameters>::Query(controller, IID_IAAXEffectParametersV1);
    // The host has no other effects than those of the same module.
    mEffect = dynamic_cast<CDirectEffect*>(mParameters.Get());
    return mEffect != nullptr ? kAAX_Success : kAAX_ErrorNullObject;
}

AAX_Result CDirectEditor::Uninitialize()
{
    const AAX_Result closed = SetViewContainer(nullptr);
    mEffect = nullptr;
    mParameters.Reset();
    return closed;
}

AAX_Result CDirectEditor::NotificationReceived(AAX_CTypeID, const void*, std::uint32_t)
{
    return kAAX_Success;
}

AAX_Result CDirectEditor::SetViewContainer(IACFUnknown* container)
{
    if (mEffect == nullptr || mEffect->Plugin() == nullptr)
        return kAAX_ErrorNullObject;
    CDrivenPlugin& plugin = *mEffect->Plugin();
    if (mContainer)
        (void)plugin.Dispatch(effEditClose); // answered with anything, as is effEditOpen
    mEffect->SetContainer(nullptr);
    mContainer = ACFPtr<AAX_IACFViewContainer>::Query(container, IID_IAAXViewContainerV1);
    mEffect->SetContainer(mContainer.Get());
    if (mContainer && (plugin.Effect().flags & effFlagsHasEditor) != 0)
        (void)plugin.Dispatch(effEditOpen, 0, 0, mContainer->GetPtr());
    return kAAX_Success;
}

AAX_Result CDirectEditor::GetViewSize(AAX_Point* size) const
{
    if (size == nullptr)
        return kAAX_ErrorNullArgument;
    *size = {};
    if (mEffect == nullptr || mEffect->Plugin() == nullptr ||
        (mEffect->Plugin()->Effect().flags & effFlagsHasEditor) == 0)
        return kAAX_Success;
    ERect* rect = nullptr;
    (void)mEffect->Plugin()->Dispatch(effEditGetRect, 0, 0, &rect); // some write it and answer 0
    if (rect != nullptr)
        *size = {static_cast<float>(rect->bottom - rect->top), static_cast<float>(rect->right - rect->left)};
    return kAAX_Success;
}

AAX_Result CDirectEditor::Draw(AAX_Rect*) { return kAAX_Success; }

AAX_Result CDirectEditor::TimerWakeup()
{
    if (mEffect == nullptr || mEffect->Plugin() == nullptr || !mContainer)
        return kAAX_Success;
    (void)mEffect->Plugin()->Dispatch(effEditIdle); // answered with anything
    if (auto wish = mEffect->TakeSizeWish())
        return mContainer->SetViewSize(*wish);
    return kAAX_Success;
}

AAX_Result CDirectEditor::ParameterUpdated(AAX_CParamID) { return kAAX_Success; }

AAX_Result CDirectEditor::GetCustomLabel(std::int32_t, AAX_IString*) const { return kAAX_ErrorUnsupported; }

AAX_Result CDirectEditor::SetControlHighlightInfo(AAX_CParamID, AAX_CBoolean, std::int32_t)
{
    return kAAX_Success;
}
