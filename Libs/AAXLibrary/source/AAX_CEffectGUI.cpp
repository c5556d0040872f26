#include "Libs/AAXLibrary/source/AAX_CEffectGUI.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_CString.h"
#include "Libs/AAXLibrary/source/AAX_ExceptionBarrier.h"
#include "Libs/AAXLibrary/source/AAX_VController.h"
#include "Libs/AAXLibrary/source/AAX_VTransport.h"
#include "Libs/AAXLibrary/source/AAX_VViewContainer.h"

AAX_CEffectGUI::AAX_CEffectGUI() = default;

AAX_CEffectGUI::~AAX_CEffectGUI()
{
    (void)AAX_CEffectGUI::Uninitialize(); // always succeeds
}

AAX_Result AAX_CEffectGUI::Initialize(IACFUnknown* inController)
{
    return AAX_Contained(
        [&, this]
        {
            mController.Set(std::make_unique<AAX_VController>(inController));
            if (inController == nullptr)
                return kAAX_ErrorNullArgument;
            mEffectParameters.Set(
                ACFPtr<AAX_IACFEffectParameters>::Query(inController, IID_IAAXEffectParametersV1));
            mTransport.Set(std::make_unique<AAX_VTransport>(inController));
            CreateViewContents();
            return kAAX_Success;
        });
}

AAX_Result AAX_CEffectGUI::Uninitialize()
{
    mEffectParameters.Release();
    mController.Release();
    mTransport.Release();
    return kAAX_Success;
}

AAX_Result AAX_CEffectGUI::NotificationReceived(AAX_CTypeID, const void*, std::uint32_t)
{
    return kAAX_Success;
}

AAX_Result AAX_CEffectGUI::SetViewContainer(IACFUnknown* inContainer)
{
    return AAX_Contained(
        [&, this]
        {
            if (inContainer == nullptr)
            {
                mViewContainer.Clear();
                DeleteViewContainer();
                return kAAX_Success;
            }
            mViewContainer.Set(std::make_unique<AAX_VViewContainer>(inContainer));
            CreateViewContainer();
            UpdateAllParameters();
            return kAAX_Success;
        });
}

AAX_Result AAX_CEffectGUI::GetViewSize(AAX_Point*) const { return kAAX_Success; }

AAX_Result AAX_CEffectGUI::Draw(AAX_Rect*) { return kAAX_Success; }

AAX_Result AAX_CEffectGUI::TimerWakeup() { return kAAX_Success; }

AAX_Result AAX_CEffectGUI::ParameterUpdated(AAX_CParamID) { return kAAX_Success; }

AAX_Result AAX_CEffectGUI::GetCustomLabel(std::int32_t, AAX_IString*) const { return kAAX_ErrorNullObject; }

AAX_Result AAX_CEffectGUI::SetControlHighlightInfo(AAX_CParamID, AAX_CBoolean, std::int32_t)
{
    return kAAX_Success;
}

void AAX_CEffectGUI::UpdateAllParameters()
{
    AAX_IACFEffectParameters* const parameters = mEffectParameters.Get();
    std::int32_t count = 0;
    if (parameters == nullptr || parameters->GetNumberOfParameters(&count) != kAAX_Success)
        return;
    // One index more than there are parameters: an instance may answer for a further one, and else refuses.
    // The wider counter lets the largest count end the loop.
    for (std::int64_t index = 0; count >= 0 && index <= count; ++index)
    {
        AAX_CString id;
        if (parameters->GetParameterIDFromIndex(static_cast<std::int32_t>(index), &id) == kAAX_Success)
            (void)ParameterUpdated(id.Get()); // a refusal concerns that one parameter only
    }
}

std::int32_t AAX_CEffectGUI::GetViewContainerType() const
{
    return mViewContainer.Get() != nullptr ? mViewContainer.Get()->GetType() : 0;
}

void* AAX_CEffectGUI::GetViewContainerPtr() const
{
    return mViewContainer.Get() != nullptr ? mViewContainer.Get()->GetPtr() : nullptr;
}

AAX_IController* AAX_CEffectGUI::GetController() { return mController.Get(); }

const AAX_IController* AAX_CEffectGUI::GetController() const { return mController.Get(); }

AAX_IEffectParameters* AAX_CEffectGUI::GetEffectParameters()
{
    return static_cast<AAX_IEffectParameters*>(mEffectParameters.Get());
}

const AAX_IEffectParameters* AAX_CEffectGUI::GetEffectParameters() const
{
    return static_cast<const AAX_IEffectParameters*>(mEffectParameters.Get());
}

AAX_IViewContainer* AAX_CEffectGUI::GetViewContainer() { return mViewContainer.Get(); }

const AAX_IViewContainer* AAX_CEffectGUI::GetViewContainer() const { return mViewContainer.Get(); }

AAX_ITransport* AAX_CEffectGUI::Transport() { return mTransport.Get(); }

const AAX_ITransport* AAX_CEffectGUI::Transport() const { return mTransport.Get(); }
