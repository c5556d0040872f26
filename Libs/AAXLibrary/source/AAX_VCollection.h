#pragma once
#include "Interfaces/AAX/AAX_IACFDescription.h"
#include "Interfaces/AAX/AAX_ICollection.h"
#include "Interfaces/ACF/ACFPtr.h"

/** The collection that the host makes for a module; every call without one answers kAAX_ErrorNullObject. */
class AAX_VCollection final : public AAX_ICollection
{
public:
    /** @param inHost may be null: then nothing can be described. */
    explicit AAX_VCollection(IACFUnknown* inHost);

    std::unique_ptr<AAX_IEffectDescriptor> NewDescriptor() override;
    AAX_Result AddEffect(const char* inEffectID, AAX_IEffectDescriptor* inDescriptor) override;
    AAX_Result SetManufacturerName(const char* inName) override;
    AAX_Result AddPackageName(const char* inName) override;
    AAX_Result SetPackageVersion(std::uint32_t inVersion) override;
    std::unique_ptr<AAX_IPropertyMap> NewPropertyMap() override;
    AAX_Result SetProperties(AAX_IPropertyMap* inProperties) override;

    /** The host's object; not counted, null when there is none. */
    IACFUnknown* GetIUnknown() const;

private:
    ACFPtr<IACFUnknown> mHost;
    ACFPtr<AAX_IACFCollection> mCollection;
};
