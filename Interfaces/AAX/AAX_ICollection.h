#pragma once
#include "Interfaces/AAX/AAX_Types.h"

#include <memory>

class AAX_IEffectDescriptor;
class AAX_IPropertyMap;

/** The module's effects and identity, as the description fills them for the host. Texts are copied. */
class AAX_ICollection
{
public:
    virtual ~AAX_ICollection() = default;
    /** @return an empty effect; null when the host offers none. */
    virtual std::unique_ptr<AAX_IEffectDescriptor> NewDescriptor() = 0;
    [[nodiscard]] virtual AAX_Result AddEffect(const char* inEffectID,
                                               AAX_IEffectDescriptor* inDescriptor) = 0;
    [[nodiscard]] virtual AAX_Result SetManufacturerName(const char* inName) = 0;
    [[nodiscard]] virtual AAX_Result AddPackageName(const char* inName) = 0;
    [[nodiscard]] virtual AAX_Result SetPackageVersion(std::uint32_t inVersion) = 0;
    /** @return no properties yet; null when the host offers none. */
    virtual std::unique_ptr<AAX_IPropertyMap> NewPropertyMap() = 0;
    [[nodiscard]] virtual AAX_Result SetProperties(AAX_IPropertyMap* inProperties) = 0;
};
