#pragma once
#include "Interfaces/AAX/AAX_Types.h"

class IACFUnknown;

/** Properties of an effect, a component or a meter, as the module fills them for the host. */
class AAX_IPropertyMap
{
public:
    virtual ~AAX_IPropertyMap() = default;
    /** @return 0 when the property is not set; `outValue` is then unchanged. */
    [[nodiscard]] virtual AAX_CBoolean GetProperty(AAX_EProperty inProperty,
                                                   AAX_CPropertyValue* outValue) const = 0;
    [[nodiscard]] virtual AAX_Result AddProperty(AAX_EProperty inProperty, AAX_CPropertyValue inValue) = 0;
    [[nodiscard]] virtual AAX_Result RemoveProperty(AAX_EProperty inProperty) = 0;
    /** The host's object, for handing it to another host call; not counted, null when there is none. */
    virtual IACFUnknown* GetIUnknown() const = 0;
};
