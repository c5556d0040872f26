#include "Libs/AAXLibrary/source/AAX_VViewContainer.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Interfaces/ACF/ACFPtr.h"
#include "Libs/AAXLibrary/source/AAX_CallHost.h"

AAX_VViewContainer::AAX_VViewContainer(IACFUnknown* inContainer)
    : mContainer(ACFPtr<AAX_IACFViewContainer>::Query(inContainer, IID_IAAXViewContainerV1).Detach())
{
}

std::int32_t AAX_VViewContainer::GetType() { return mContainer != nullptr ? mContainer->GetType() : 0; }

void* AAX_VViewContainer::GetPtr() { return mContainer != nullptr ? mContainer->GetPtr() : nullptr; }

AAX_Result AAX_VViewContainer::GetModifiers(std::uint32_t* outModifiers)
{
    return AAX_CallHost<kAAX_ErrorUnsupported>(mContainer, &AAX_IACFViewContainer::GetModifiers,
                                               outModifiers);
}

AAX_Result AAX_VViewContainer::SetViewSize(AAX_Point& ioSize)
{
    return AAX_CallHost<kAAX_Success>(mContainer, &AAX_IACFViewContainer::SetViewSize, ioSize);
}

AAX_Result AAX_VViewContainer::HandleParameterMouseDown(AAX_CParamID inId, std::uint32_t inModifiers)
{
    return AAX_CallHost<kAAX_ErrorUnsupported>(mContainer, &AAX_IACFViewContainer::HandleParameterMouseDown,
                                               inId, inModifiers);
}

AAX_Result AAX_VViewContainer::HandleParameterMouseDrag(AAX_CParamID inId, std::uint32_t inModifiers)
{
    return AAX_CallHost<kAAX_ErrorUnsupported>(mContainer, &AAX_IACFViewContainer::HandleParameterMouseDrag,
                                               inId, inModifiers);
}

AAX_Result AAX_VViewContainer::HandleParameterMouseUp(AAX_CParamID inId, std::uint32_t inModifiers)
{
    return AAX_CallHost<kAAX_ErrorUnsupported>(mContainer, &AAX_IACFViewContainer::HandleParameterMouseUp,
                                               inId, inModifiers);
}
