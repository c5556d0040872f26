#pragma once
#include "Interfaces/ACF/ACFInterfaces.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/HostDescription.h"

#include <memory>

/**
 * The host as a module sees it: an unknown with a component factory, which makes the collection, effect and
 * component descriptors, property maps and the host services.
 *
 * Owned by the caller; references that the module takes are counted but keep nothing alive. The collections
 * of one host fill one description.
 *
 * Threads: one at a time, like the module's entry points.
 */
class CHost final : public IACFComponentFactory
{
public:
    explicit CHost(CHostLog& inLog); // must outlive the host
    CHost(const CHost&) = delete;
    CHost& operator=(const CHost&) = delete;

    /** What the module's entry points get. */
    IACFUnknown* Unknown() noexcept { return this; }
    const SDescription& Description() const noexcept { return *mDescription; }
    SDescription& EditDescription() noexcept { return *mDescription; }
    /** References to this object that the module holds. */
    int References() const noexcept { return mReferences; }
    CHostLog& Log() noexcept { return mLog; }

    ACFRESULT QueryInterface(const acfIID& iid, void** out) override;
    acfUInt32 AddRef() override;
    acfUInt32 Release() override;
    ACFRESULT CreateComponent(const acfUID& component, IACFUnknown* outer, const acfIID& iid,
                              void** out) override;
    ACFRESULT CreateInstance(const acfCLSID& cls, IACFUnknown* outer, const acfIID& iid, void** out) override;
    ACFRESULT GetClassFactory(const acfCLSID& cls, const acfIID& iid, void** out) override;
    ACFRESULT FindDefinition(const acfUID& definition, const acfIID& iid, IACFDefinition** out) override;
    ACFRESULT EnumDefinitions(const acfUID& category, IACFEnumDefinitions** out) override;

private:
    CHostLog& mLog;
    // Shared with the collections, which a module may hold for longer than the host lives.
    std::shared_ptr<SDescription> mDescription;
    int mReferences = 0;
};
