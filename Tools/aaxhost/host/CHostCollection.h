#pragma once
#include "Interfaces/AAX/AAX_IACFDescription.h"
#include "Tools/aaxhost/host/CCountedObject.h"
#include "Tools/aaxhost/host/HostDescription.h"

#include <memory>

/** The collection, which is the plug-in definition as well. Writes into the description of its host. */
class CHostCollection final : public CCountedObject<AAX_IACFCollection>
{
public:
    CHostCollection(CHostLog& inLog, std::shared_ptr<SDescription> inDescription);

    AAX_Result AddEffect(const char* effectID, IACFUnknown* effectDescriptor) override;
    AAX_Result SetManufacturerName(const char* name) override;
    AAX_Result AddPackageName(const char* name) override;
    AAX_Result SetPackageVersion(std::uint32_t version) override;
    AAX_Result SetProperties(IACFUnknown* propertyMap) override;

    // The attributes of a definition are of no use to this host: it has none and takes none.
    ACFRESULT DefineAttribute(const acfUID& attribute, const acfUID& type, const void* data,
                              acfUInt32 size) override;
    ACFRESULT GetAttributeInfo(const acfUID& attribute, acfUID* type, acfUInt32* size) override;
    ACFRESULT CopyAttribute(const acfUID& attribute, const acfUID& type, void* data, acfUInt32 size) override;
    ACFRESULT InitializePlugin(const acfUID& plugin, acfUInt32 major, acfUInt32 minor, const acfWChar* name,
                               const acfUID& vendor, const acfWChar* vendorName, acfUInt32 componentCount,
                               acfBool cache) override;

private:
    std::shared_ptr<SDescription> mDescription;
};
