#include "Interfaces/AAX/AAX_IEffectParameters.h"

#include "Interfaces/AAX/AAX_UIDs.h"

ACFRESULT AAX_IEffectParameters::QueryInterface(const acfIID& iid, void** out)
{
    return GetUnknown()->QueryInterface(iid, out);
}

acfUInt32 AAX_IEffectParameters::AddRef() { return GetUnknown()->AddRef(); }

acfUInt32 AAX_IEffectParameters::Release() { return GetUnknown()->Release(); }

ACFRESULT AAX_IEffectParameters::InternalQueryInterface(const acfIID& iid, void** out)
{
    if (out == nullptr)
        return ACF_E_POINTER;
    if (iid == IID_IAAXEffectParametersV1 || iid == IID_IAAXEffectParametersV2)
    {
        *out = static_cast<AAX_IACFEffectParameters_V2*>(this);
        AddRef();
        return ACF_OK;
    }
    return CACFUnknown::InternalQueryInterface(iid, out);
}
