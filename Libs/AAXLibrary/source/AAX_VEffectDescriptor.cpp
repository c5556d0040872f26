#include "Libs/AAXLibrary/source/AAX_VEffectDescriptor.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_CallHost.h"
#include "Libs/AAXLibrary/source/AAX_CreateHostComponent.h"
#include "Libs/AAXLibrary/source/AAX_VComponentDescriptor.h"
#include "Libs/AAXLibrary/source/AAX_VPropertyMap.h"

AAX_VEffectDescriptor::AAX_VEffectDescriptor(IACFUnknown* inHost)
    : mHost(inHost),
      mDescriptor(AAX_CreateHostComponent<AAX_IACFEffectDescriptor>(inHost, AAXCompID_AAXEffectDescriptor,
                                                                    IID_IAAXEffectDescriptorV1))
{
}

std::unique_ptr<AAX_IEffectDescriptor> AAX_VEffectDescriptor::Create(IACFUnknown* inHost)
{
    auto descriptor = std::make_unique<AAX_VEffectDescriptor>(inHost);
    return descriptor->mDescriptor ? std::move(descriptor) : nullptr;
}

std::unique_ptr<AAX_IComponentDescriptor> AAX_VEffectDescriptor::NewComponentDescriptor()
{
    return AAX_VComponentDescriptor::Create(mHost.Get());
}

AAX_Result AAX_VEffectDescriptor::AddComponent(AAX_IComponentDescriptor* inComponent)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFEffectDescriptor::AddComponent,
                        inComponent != nullptr ? inComponent->GetIUnknown() : nullptr);
}

AAX_Result AAX_VEffectDescriptor::AddName(const char* inName)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFEffectDescriptor::AddName, inName);
}

AAX_Result AAX_VEffectDescriptor::AddCategory(std::uint32_t inCategory)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFEffectDescriptor::AddCategory, inCategory);
}

AAX_Result AAX_VEffectDescriptor::AddCategoryBypassParameter(std::uint32_t inCategory, AAX_CParamID inId)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFEffectDescriptor::AddCategoryBypassParameter, inCategory,
                        inId);
}

AAX_Result AAX_VEffectDescriptor::AddProcPtr(void* inProc, AAX_CProcPtrID inProcID)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFEffectDescriptor::AddProcPtr, inProc, inProcID);
}

std::unique_ptr<AAX_IPropertyMap> AAX_VEffectDescriptor::NewPropertyMap()
{
    return AAX_VPropertyMap::Create(mHost.Get());
}

AAX_Result AAX_VEffectDescriptor::SetProperties(AAX_IPropertyMap* inProperties)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFEffectDescriptor::SetProperties,
                        AAX_UnknownOf(inProperties));
}

AAX_Result AAX_VEffectDescriptor::AddResourceInfo(std::int32_t inType, const char* inInfo)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFEffectDescriptor::AddResourceInfo, inType, inInfo);
}

AAX_Result AAX_VEffectDescriptor::AddMeterDescription(AAX_CTypeID inMeterID, const char* inName,
                                                      AAX_IPropertyMap* inProperties)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFEffectDescriptor::AddMeterDescription, inMeterID, inName,
                        AAX_UnknownOf(inProperties));
}

IACFUnknown* AAX_VEffectDescriptor::GetIUnknown() const { return mDescriptor.Get(); }
