#include "Libs/AAXLibrary/source/AAX_VPropertyMap.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_CallHost.h"
#include "Libs/AAXLibrary/source/AAX_CreateHostComponent.h"

AAX_VPropertyMap::AAX_VPropertyMap(IACFUnknown* inHost)
    : mMap(AAX_CreateHostComponent<AAX_IACFPropertyMap>(inHost, AAXCompID_AAXPropertyMap,
                                                        IID_IAAXPropertyMapV1))
{
}

std::unique_ptr<AAX_IPropertyMap> AAX_VPropertyMap::Create(IACFUnknown* inHost)
{
    auto map = std::make_unique<AAX_VPropertyMap>(inHost);
    return map->mMap ? std::move(map) : nullptr;
}

AAX_CBoolean AAX_VPropertyMap::GetProperty(AAX_EProperty inProperty, AAX_CPropertyValue* outValue) const
{
    return mMap ? mMap->GetProperty(inProperty, outValue) : AAX_CBoolean{0};
}

AAX_Result AAX_VPropertyMap::AddProperty(AAX_EProperty inProperty, AAX_CPropertyValue inValue)
{
    return AAX_CallHost(mMap.Get(), &AAX_IACFPropertyMap::AddProperty, inProperty, inValue);
}

AAX_Result AAX_VPropertyMap::RemoveProperty(AAX_EProperty inProperty)
{
    return AAX_CallHost(mMap.Get(), &AAX_IACFPropertyMap::RemoveProperty, inProperty);
}

IACFUnknown* AAX_VPropertyMap::GetIUnknown() const { return mMap.Get(); }
