#pragma once
#include "Interfaces/AAX/AAX_Types.h"

#include <memory>

class AAX_IComponentDescriptor;
class AAX_IPropertyMap;
class IACFUnknown;

/** One effect of the module, as the description fills it for the host. Texts are copied. */
class AAX_IEffectDescriptor
{
public:
    virtual ~AAX_IEffectDescriptor() = default;
    /** @return an empty component; null when the host offers none. */
    virtual std::unique_ptr<AAX_IComponentDescriptor> NewComponentDescriptor() = 0;
    [[nodiscard]] virtual AAX_Result AddComponent(AAX_IComponentDescriptor* inComponent) = 0;
    [[nodiscard]] virtual AAX_Result AddName(const char* inName) = 0;
    [[nodiscard]] virtual AAX_Result AddCategory(std::uint32_t inCategory) = 0;
    [[nodiscard]] virtual AAX_Result AddCategoryBypassParameter(std::uint32_t inCategory,
                                                                AAX_CParamID inId) = 0;
    /** @param inProc an `AAX_CFactoryProc` that stays valid while the module is loaded. */
    [[nodiscard]] virtual AAX_Result AddProcPtr(void* inProc, AAX_CProcPtrID inProcID) = 0;
    /** @return no properties yet; null when the host offers none. */
    virtual std::unique_ptr<AAX_IPropertyMap> NewPropertyMap() = 0;
    [[nodiscard]] virtual AAX_Result SetProperties(AAX_IPropertyMap* inProperties) = 0;
    [[nodiscard]] virtual AAX_Result AddResourceInfo(std::int32_t inType, const char* inInfo) = 0;
    [[nodiscard]] virtual AAX_Result AddMeterDescription(AAX_CTypeID inMeterID, const char* inName,
                                                         AAX_IPropertyMap* inProperties) = 0;
    /** The host's object, for handing it to another host call; not counted, null when there is none. */
    virtual IACFUnknown* GetIUnknown() const = 0;
};
