#include "Tools/aaxhost/host/CHostPropertyMap.h"

#include "Interfaces/AAX/AAX_UIDs.h"

#include <algorithm>
#include <fmt/format.h>

CHostPropertyMap::CHostPropertyMap(CHostLog& inLog) : CCountedObject(inLog, {IID_IAAXPropertyMapV1}) {}

AAX_CBoolean CHostPropertyMap::GetProperty(AAX_EProperty property, AAX_CPropertyValue* value) const
{
    if (mLog.Record("GetProperty", std::to_string(property)) != kAAX_Success || value == nullptr)
        return 0;
    const auto found = FindProperty(mProperties, property);
    if (!found)
        return 0;
    *value = *found;
    return 1;
}

AAX_Result CHostPropertyMap::AddProperty(AAX_EProperty property, AAX_CPropertyValue value)
{
    if (const AAX_Result fault = mLog.Record("AddProperty", fmt::format("{}, {}", property, value)))
        return fault;
    for (SProperty& entry : mProperties)
        if (entry.mProperty == property)
        {
            entry.mValue = value;
            return kAAX_Success;
        }
    mProperties.push_back({property, value});
    return kAAX_Success;
}

AAX_Result CHostPropertyMap::RemoveProperty(AAX_EProperty property)
{
    if (const AAX_Result fault = mLog.Record("RemoveProperty", std::to_string(property)))
        return fault;
    std::erase_if(mProperties, [=](const SProperty& entry) { return entry.mProperty == property; });
    return kAAX_Success;
}

bool CopyProperties(IACFUnknown* inMap, PropertyList& outProperties)
{
    outProperties.clear();
    if (inMap == nullptr)
        return true;
    const auto* map = FindHostObject<CHostPropertyMap>(inMap);
    if (map == nullptr)
        return false;
    outProperties = map->Properties();
    return true;
}
