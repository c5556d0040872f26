#include "Tools/aaxhost/host/CHostCollection.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Tools/aaxhost/host/CHostEffectDescriptor.h"
#include "Tools/aaxhost/host/CHostPropertyMap.h"

#include <fmt/format.h>

CHostCollection::CHostCollection(CHostLog& inLog, std::shared_ptr<SDescription> inDescription)
    : CCountedObject(inLog, {IID_IAAXCollectionV1, IID_IACFPluginDefinition, IID_IACFDefinition}),
      mDescription(std::move(inDescription))
{
}

AAX_Result CHostCollection::AddEffect(const char* effectID, IACFUnknown* effectDescriptor)
{
    if (const AAX_Result fault =
            mLog.Record("AddEffect", fmt::format("{}, {}", Quoted(effectID),
                                                 effectDescriptor == nullptr ? "null" : "effect")))
        return fault;
    const auto* descriptor = FindHostObject<CHostEffectDescriptor>(effectDescriptor);
    if (effectID == nullptr || descriptor == nullptr)
        return ACF_E_INVALIDARG;
    SEffect& effect = mDescription->mEffects.emplace_back(descriptor->Effect());
    effect.mID = effectID;
    return kAAX_Success;
}

AAX_Result CHostCollection::SetManufacturerName(const char* name)
{
    if (const AAX_Result fault = mLog.Record("SetManufacturerName", Quoted(name)))
        return fault;
    if (name == nullptr)
        return kAAX_ErrorNullArgument;
    mDescription->mManufacturerName = name;
    return kAAX_Success;
}

AAX_Result CHostCollection::AddPackageName(const char* name)
{
    if (const AAX_Result fault = mLog.Record("AddPackageName", Quoted(name)))
        return fault;
    if (name == nullptr)
        return kAAX_ErrorNullArgument;
    mDescription->mPackageNames.emplace_back(name);
    return kAAX_Success;
}

AAX_Result CHostCollection::SetPackageVersion(std::uint32_t version)
{
    if (const AAX_Result fault = mLog.Record("SetPackageVersion", std::to_string(version)))
        return fault;
    mDescription->mPackageVersion = version;
    return kAAX_Success;
}

AAX_Result CHostCollection::SetProperties(IACFUnknown* propertyMap)
{
    if (const AAX_Result fault = mLog.Record("SetProperties", propertyMap == nullptr ? "null" : "properties"))
        return fault;
    return CopyProperties(propertyMap, mDescription->mProperties) ? kAAX_Success : ACF_E_INVALIDARG;
}

ACFRESULT CHostCollection::DefineAttribute(const acfUID& attribute, const acfUID&, const void*, acfUInt32)
{
    const ACFRESULT fault = mLog.Record("DefineAttribute", NameOfUid(attribute));
    return fault != ACF_OK ? fault : ACF_E_NOTIMPL;
}

ACFRESULT CHostCollection::GetAttributeInfo(const acfUID& attribute, acfUID*, acfUInt32*)
{
    const ACFRESULT fault = mLog.Record("GetAttributeInfo", NameOfUid(attribute));
    return fault != ACF_OK ? fault : ACF_E_NOTIMPL;
}

ACFRESULT CHostCollection::CopyAttribute(const acfUID& attribute, const acfUID&, void*, acfUInt32)
{
    const ACFRESULT fault = mLog.Record("CopyAttribute", NameOfUid(attribute));
    return fault != ACF_OK ? fault : ACF_E_NOTIMPL;
}

ACFRESULT CHostCollection::InitializePlugin(const acfUID& plugin, acfUInt32, acfUInt32, const acfWChar*,
                                            const acfUID&, const acfWChar*, acfUInt32, acfBool)
{
    return mLog.Record("InitializePlugin", NameOfUid(plugin));
}
