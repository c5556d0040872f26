#pragma once
#include "Interfaces/AAX/AAX_IACFDescription.h"
#include "Tools/aaxhost/host/CCountedObject.h"
#include "Tools/aaxhost/host/HostDescription.h"

/** A property map that the module fills; a property that is added again takes the new value in its place. */
class CHostPropertyMap final : public CCountedObject<AAX_IACFPropertyMap>
{
public:
    explicit CHostPropertyMap(CHostLog& inLog);
    const PropertyList& Properties() const noexcept { return mProperties; }

    AAX_CBoolean GetProperty(AAX_EProperty property, AAX_CPropertyValue* value) const override;
    AAX_Result AddProperty(AAX_EProperty property, AAX_CPropertyValue value) override;
    AAX_Result RemoveProperty(AAX_EProperty property) override;

private:
    PropertyList mProperties;
};

/**
 * Copies the properties of a map that the module hands over; a null map has none.
 * @return false when the object is no property map of this host.
 */
bool CopyProperties(IACFUnknown* inMap, PropertyList& outProperties);
