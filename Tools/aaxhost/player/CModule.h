#pragma once
#include "Interfaces/ACF/ACFPtr.h"
#include "Tools/aaxhost/host/CHost.h"
#include "Tools/support/COutcome.h"

#include <cstdint>
#include <memory>
#include <string>

/** The seven functions that a module exports. */
struct SModuleEntries
{
    ACFRESULT (*mRegisterPlugin)(IACFUnknown*, IACFPluginDefinition**) = nullptr;
    ACFRESULT (*mRegisterComponent)(IACFUnknown*, acfUInt32, IACFComponentDefinition**) = nullptr;
    ACFRESULT (*mGetClassFactory)(IACFUnknown*, const acfCLSID&, const acfIID&, void**) = nullptr;
    ACFRESULT (*mCanUnloadNow)(IACFUnknown*) = nullptr;
    ACFRESULT (*mStartup)(IACFUnknown*) = nullptr;
    ACFRESULT (*mShutdown)(IACFUnknown*) = nullptr;
    ACFRESULT (*mGetSDKVersion)(std::uint64_t*) = nullptr;
};

/**
 * A module in use: loaded, started and described, in the order in which a host does it. The destructor ends
 * it: shut down, and unloaded unless the module still has live objects.
 *
 * Threads: the main thread. Instances must be gone before their module.
 */
class CModule
{
public:
    /**
     * @param inPath a bundle folder `Name.aaxplugin` or the module file itself.
     * @param inLog gets what the module calls on the host; outlives the module.
     */
    static COutcome<std::unique_ptr<CModule>> Open(const std::string& inPath, CHostLog& inLog);
    /** As Open for a module that is part of this program. */
    static COutcome<std::unique_ptr<CModule>> Start(const SModuleEntries& inEntries, CHostLog& inLog);
    CModule(const CModule&) = delete;
    CModule& operator=(const CModule&) = delete;
    ~CModule();

    CHost& Host() noexcept { return mHost; }
    const SDescription& Description() const noexcept { return mHost.Description(); }
    /** The first effect; an opened module has at least one. */
    const SEffect& Effect() const { return Description().mEffects.front(); }
    const SModuleEntries& Entries() const noexcept { return mEntries; }
    /** What the module says it was built for. */
    std::uint64_t InterfaceVersion() const noexcept { return mInterfaceVersion; }
    /** Where the plug-in that it wraps stands, a file or a bundle folder, whether there is one or not;
     * absolute. Only of an opened module. */
    std::string PluginPath() const;
    /** How many objects of the module are alive, by its own account. */
    int LiveObjects();

private:
    struct SImageCloser
    {
        void operator()(void* inImage) const;
    };
    using ImagePtr = std::unique_ptr<void, SImageCloser>;

    CModule(ImagePtr inImage, const SModuleEntries& inEntries, CHostLog& inLog);
    static COutcome<std::unique_ptr<CModule>> Begin(std::unique_ptr<CModule> inModule);

    ImagePtr mImage; // null for a module of this program
    SModuleEntries mEntries;
    CHost mHost;
    ACFPtr<IACFPluginDefinition> mDefinition;
    std::uint64_t mInterfaceVersion = 0;
    bool mStarted = false;
    std::string mFile; // absolute; empty for a module of this program
};
