#include "Libs/AAXLibrary/source/AAX_VCollection.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_CallHost.h"
#include "Libs/AAXLibrary/source/AAX_CreateHostComponent.h"
#include "Libs/AAXLibrary/source/AAX_VEffectDescriptor.h"
#include "Libs/AAXLibrary/source/AAX_VPropertyMap.h"

AAX_VCollection::AAX_VCollection(IACFUnknown* inHost)
    : mHost(inHost),
      mCollection(
          AAX_CreateHostComponent<AAX_IACFCollection>(inHost, AAXCompID_AAXCollection, IID_IAAXCollectionV1))
{
}

std::unique_ptr<AAX_IEffectDescriptor> AAX_VCollection::NewDescriptor()
{
    return mCollection ? AAX_VEffectDescriptor::Create(mHost.Get()) : nullptr;
}

AAX_Result AAX_VCollection::AddEffect(const char* inEffectID, AAX_IEffectDescriptor* inDescriptor)
{
    return AAX_CallHost(mCollection.Get(), &AAX_IACFCollection::AddEffect, inEffectID,
                        inDescriptor != nullptr ? inDescriptor->GetIUnknown() : nullptr);
}

AAX_Result AAX_VCollection::SetManufacturerName(const char* inName)
{
    return AAX_CallHost(mCollection.Get(), &AAX_IACFCollection::SetManufacturerName, inName);
}

AAX_Result AAX_VCollection::AddPackageName(const char* inName)
{
    return AAX_CallHost(mCollection.Get(), &AAX_IACFCollection::AddPackageName, inName);
}

AAX_Result AAX_VCollection::SetPackageVersion(std::uint32_t inVersion)
{
    return AAX_CallHost(mCollection.Get(), &AAX_IACFCollection::SetPackageVersion, inVersion);
}

std::unique_ptr<AAX_IPropertyMap> AAX_VCollection::NewPropertyMap()
{
    return AAX_VPropertyMap::Create(mHost.Get());
}

AAX_Result AAX_VCollection::SetProperties(AAX_IPropertyMap* inProperties)
{
    return AAX_CallHost(mCollection.Get(), &AAX_IACFCollection::SetProperties, AAX_UnknownOf(inProperties));
}

IACFUnknown* AAX_VCollection::GetIUnknown() const { return mCollection.Get(); }
