#pragma once
#include "Interfaces/AAX/AAX_IACFDescription.h"
#include "Tools/aaxhost/host/CCountedObject.h"
#include "Tools/aaxhost/host/HostDescription.h"

/** An effect that the module describes. A call with a foreign object is refused. */
class CHostEffectDescriptor final : public CCountedObject<AAX_IACFEffectDescriptor>
{
public:
    explicit CHostEffectDescriptor(CHostLog& inLog);
    const SEffect& Effect() const noexcept { return mEffect; }

    AAX_Result AddComponent(IACFUnknown* componentDescriptor) override;
    AAX_Result AddName(const char* name) override;
    AAX_Result AddCategory(std::uint32_t category) override;
    AAX_Result AddCategoryBypassParameter(std::uint32_t category, AAX_CParamID id) override;
    AAX_Result AddProcPtr(void* proc, AAX_CProcPtrID procID) override;
    AAX_Result SetProperties(IACFUnknown* propertyMap) override;
    AAX_Result AddResourceInfo(std::int32_t type, const char* info) override;
    AAX_Result AddMeterDescription(AAX_CTypeID meterID, const char* name, IACFUnknown* propertyMap) override;

private:
    SEffect mEffect;
};
