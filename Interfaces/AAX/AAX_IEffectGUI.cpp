#include "Interfaces/AAX/AAX_IEffectGUI.h"

#include "Interfaces/AAX/AAX_UIDs.h"

ACFRESULT AAX_IEffectGUI::QueryInterface(const acfIID& iid, void** out)
{
    return GetUnknown()->QueryInterface(iid, out);
}

acfUInt32 AAX_IEffectGUI::AddRef() { return GetUnknown()->AddRef(); }

acfUInt32 AAX_IEffectGUI::Release() { return GetUnknown()->Release(); }

ACFRESULT AAX_IEffectGUI::InternalQueryInterface(const acfIID& iid, void** out)
{
    if (out == nullptr)
        return ACF_E_POINTER;
    if (iid == IID_IAAXEffectGUIV1)
    {
        *out = static_cast<AAX_IACFEffectGUI*>(this);
        AddRef();
        return ACF_OK;
    }
    return CACFUnknown::InternalQueryInterface(iid, out);
}
