#pragma once
#include "Interfaces/AAX/AAX_IACFDescription.h"
#include "Interfaces/AAX/AAX_IEffectDescriptor.h"
#include "Interfaces/ACF/ACFPtr.h"

/** An effect descriptor made by the host; every call without a host object answers kAAX_ErrorNullObject. */
class AAX_VEffectDescriptor final : public AAX_IEffectDescriptor
{
public:
    explicit AAX_VEffectDescriptor(IACFUnknown* inHost);
    /** @return null when the host makes no effect descriptor. */
    static std::unique_ptr<AAX_IEffectDescriptor> Create(IACFUnknown* inHost);

    std::unique_ptr<AAX_IComponentDescriptor> NewComponentDescriptor() override;
    AAX_Result AddComponent(AAX_IComponentDescriptor* inComponent) override;
    AAX_Result AddName(const char* inName) override;
    AAX_Result AddCategory(std::uint32_t inCategory) override;
    AAX_Result AddCategoryBypassParameter(std::uint32_t inCategory, AAX_CParamID inId) override;
    AAX_Result AddProcPtr(void* inProc, AAX_CProcPtrID inProcID) override;
    std::unique_ptr<AAX_IPropertyMap> NewPropertyMap() override;
    AAX_Result SetProperties(AAX_IPropertyMap* inProperties) override;
    AAX_Result AddResourceInfo(std::int32_t inType, const char* inInfo) override;
    AAX_Result AddMeterDescription(AAX_CTypeID inMeterID, const char* inName,
                                   AAX_IPropertyMap* inProperties) override;
    IACFUnknown* GetIUnknown() const override;

private:
    ACFPtr<IACFUnknown> mHost;
    ACFPtr<AAX_IACFEffectDescriptor> mDescriptor;
};
