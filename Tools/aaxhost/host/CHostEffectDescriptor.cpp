#include "Tools/aaxhost/host/CHostEffectDescriptor.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Tools/aaxhost/host/CHostComponentDescriptor.h"
#include "Tools/aaxhost/host/CHostPropertyMap.h"

#include <fmt/format.h>

CHostEffectDescriptor::CHostEffectDescriptor(CHostLog& inLog)
    : CCountedObject(inLog, {IID_IAAXEffectDescriptorV1})
{
}

AAX_Result CHostEffectDescriptor::AddComponent(IACFUnknown* componentDescriptor)
{
    if (const AAX_Result fault =
            mLog.Record("AddComponent", componentDescriptor == nullptr ? "null" : "component"))
        return fault;
    const auto* component = FindHostObject<CHostComponentDescriptor>(componentDescriptor);
    if (component == nullptr)
        return ACF_E_INVALIDARG;
    mEffect.mComponents.push_back(component->Component());
    return kAAX_Success;
}

AAX_Result CHostEffectDescriptor::AddName(const char* name)
{
    if (const AAX_Result fault = mLog.Record("AddName", Quoted(name)))
        return fault;
    if (name == nullptr)
        return kAAX_ErrorNullArgument;
    mEffect.mNames.emplace_back(name);
    return kAAX_Success;
}

AAX_Result CHostEffectDescriptor::AddCategory(std::uint32_t category)
{
    if (const AAX_Result fault = mLog.Record("AddCategory", fmt::format("0x{:X}", category)))
        return fault;
    mEffect.mCategories.push_back(category);
    return kAAX_Success;
}

AAX_Result CHostEffectDescriptor::AddCategoryBypassParameter(std::uint32_t category, AAX_CParamID id)
{
    if (const AAX_Result fault =
            mLog.Record("AddCategoryBypassParameter", fmt::format("0x{:X}, {}", category, Quoted(id))))
        return fault;
    mEffect.mBypassParameters.push_back({category, id != nullptr ? id : ""});
    return kAAX_Success;
}

AAX_Result CHostEffectDescriptor::AddProcPtr(void* proc, AAX_CProcPtrID procID)
{
    if (const AAX_Result fault =
            mLog.Record("AddProcPtr", fmt::format("{}, {}", proc == nullptr ? "null" : "proc", procID)))
        return fault;
    mEffect.mProcPtrs.push_back({proc, procID});
    return kAAX_Success;
}

AAX_Result CHostEffectDescriptor::SetProperties(IACFUnknown* propertyMap)
{
    if (const AAX_Result fault = mLog.Record("SetProperties", propertyMap == nullptr ? "null" : "properties"))
        return fault;
    return CopyProperties(propertyMap, mEffect.mProperties) ? kAAX_Success : ACF_E_INVALIDARG;
}

AAX_Result CHostEffectDescriptor::AddResourceInfo(std::int32_t type, const char* info)
{
    if (const AAX_Result fault = mLog.Record("AddResourceInfo", fmt::format("{}, {}", type, Quoted(info))))
        return fault;
    mEffect.mResources.push_back({type, info != nullptr ? info : ""});
    return kAAX_Success;
}

AAX_Result CHostEffectDescriptor::AddMeterDescription(AAX_CTypeID meterID, const char* name,
                                                      IACFUnknown* propertyMap)
{
    if (const AAX_Result fault = mLog.Record(
            "AddMeterDescription", fmt::format("{}, {}", NameOfFourCharCode(meterID), Quoted(name))))
        return fault;
    SMeterDescription meter{meterID, name != nullptr ? name : "", {}};
    if (!CopyProperties(propertyMap, meter.mProperties))
        return ACF_E_INVALIDARG;
    mEffect.mMeters.push_back(std::move(meter));
    return kAAX_Success;
}
