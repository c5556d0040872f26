#pragma once
#include "Interfaces/AAX/AAX_IACFDescription.h"
#include "Interfaces/AAX/AAX_IPropertyMap.h"
#include "Interfaces/ACF/ACFPtr.h"

#include <memory>

/** A property map made by the host; every call without a host object answers kAAX_ErrorNullObject. */
class AAX_VPropertyMap final : public AAX_IPropertyMap
{
public:
    explicit AAX_VPropertyMap(IACFUnknown* inHost);
    /** @return null when the host makes no property map. */
    static std::unique_ptr<AAX_IPropertyMap> Create(IACFUnknown* inHost);

    AAX_CBoolean GetProperty(AAX_EProperty inProperty, AAX_CPropertyValue* outValue) const override;
    AAX_Result AddProperty(AAX_EProperty inProperty, AAX_CPropertyValue inValue) override;
    AAX_Result RemoveProperty(AAX_EProperty inProperty) override;
    IACFUnknown* GetIUnknown() const override;

private:
    ACFPtr<AAX_IACFPropertyMap> mMap;
};

/** The host's object behind a property map; null for no map. */
inline IACFUnknown* AAX_UnknownOf(const AAX_IPropertyMap* inProperties)
{
    return inProperties != nullptr ? inProperties->GetIUnknown() : nullptr;
}
