#include "Tools/aaxhost/host/CHost.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Interfaces/ACF/ACFPtr.h"
#include "Tools/aaxhost/host/CHostCollection.h"
#include "Tools/aaxhost/host/CHostComponentDescriptor.h"
#include "Tools/aaxhost/host/CHostEffectDescriptor.h"
#include "Tools/aaxhost/host/CHostPropertyMap.h"
#include "Tools/aaxhost/host/CHostServices.h"

namespace
{
/** Hands over the first reference of a new object, or deletes it when it lacks that interface. */
template <class Object>
ACFRESULT HandOver(std::unique_ptr<Object> inObject, const acfIID& iid, void** out)
{
    if (!inObject->Answers(iid))
        return ACF_E_NOINTERFACE;
    inObject->AddRef();
    *out = inObject.release(); // the reference owns it now
    return ACF_OK;
}
} // namespace

CHost::CHost(CHostLog& inLog) : mLog(inLog), mDescription(std::make_shared<SDescription>()) {}

ACFRESULT CHost::QueryInterface(const acfIID& iid, void** out)
{
    if (out == nullptr)
        return ACF_E_POINTER;
    *out = nullptr;
    if (const ACFRESULT fault = mLog.Record("QueryInterface", NameOfUid(iid)))
        return fault;
    if (!(iid == IID_IACFUnknown || iid == IID_IACFComponentFactory) || !mLog.Offers(iid))
        return ACF_E_NOINTERFACE;
    *out = static_cast<IACFComponentFactory*>(this);
    AddRef();
    return ACF_OK;
}

acfUInt32 CHost::AddRef() { return static_cast<acfUInt32>(++mReferences); }

acfUInt32 CHost::Release() { return static_cast<acfUInt32>(--mReferences); }

ACFRESULT CHost::CreateComponent(const acfUID& component, IACFUnknown* outer, const acfIID& iid, void** out)
{
    if (out == nullptr)
        return ACF_E_POINTER;
    *out = nullptr;
    if (const ACFRESULT fault = mLog.Record("CreateComponent", NameOfUid(component) + ", " + NameOfUid(iid)))
        return fault;
    if (outer != nullptr)
        return ACF_E_INVALIDARG; // none of these can be part of another object
    if (!mLog.Offers(component))
        return ACF_E_NOINTERFACE;
    if (component == AAXCompID_AAXCollection)
        return HandOver(std::make_unique<CHostCollection>(mLog, mDescription), iid, out);
    if (component == AAXCompID_AAXEffectDescriptor)
        return HandOver(std::make_unique<CHostEffectDescriptor>(mLog), iid, out);
    if (component == AAXCompID_AAXComponentDescriptor)
        return HandOver(std::make_unique<CHostComponentDescriptor>(mLog), iid, out);
    if (component == AAXCompID_AAXPropertyMap)
        return HandOver(std::make_unique<CHostPropertyMap>(mLog), iid, out);
    if (component == AAXCompID_HostServices)
        return HandOver(std::make_unique<CHostServices>(mLog), iid, out);
    return ACF_E_NOINTERFACE;
}

ACFRESULT CHost::CreateInstance(const acfCLSID& cls, IACFUnknown*, const acfIID&, void** out)
{
    if (out != nullptr)
        *out = nullptr;
    const ACFRESULT fault = mLog.Record("CreateInstance", NameOfUid(cls));
    return fault != ACF_OK ? fault : ACF_E_NOINTERFACE;
}

ACFRESULT CHost::GetClassFactory(const acfCLSID& cls, const acfIID&, void** out)
{
    if (out != nullptr)
        *out = nullptr;
    const ACFRESULT fault = mLog.Record("GetClassFactory", NameOfUid(cls));
    return fault != ACF_OK ? fault : ACF_E_NOTIMPL;
}

ACFRESULT CHost::FindDefinition(const acfUID& definition, const acfIID&, IACFDefinition** out)
{
    if (out != nullptr)
        *out = nullptr;
    const ACFRESULT fault = mLog.Record("FindDefinition", NameOfUid(definition));
    return fault != ACF_OK ? fault : ACF_E_NOTIMPL;
}

ACFRESULT CHost::EnumDefinitions(const acfUID& category, IACFEnumDefinitions** out)
{
    if (out != nullptr)
        *out = nullptr;
    const ACFRESULT fault = mLog.Record("EnumDefinitions", NameOfUid(category));
    return fault != ACF_OK ? fault : ACF_E_NOTIMPL;
}
