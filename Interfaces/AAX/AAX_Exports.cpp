#include "Interfaces/AAX/AAX_Module.h"

/**
 * The module's border: the seven functions that a host finds by name. No exception passes them.
 */
#define AAX_ENTRY_POINT extern "C" __attribute__((visibility("default"))) ACFRESULT

namespace
{
template <class Call>
ACFRESULT Contained(Call inCall) noexcept
{
    try
    {
        return inCall();
    }
    catch (...)
    {
        return ACF_E_UNEXPECTED;
    }
}
} // namespace

AAX_ENTRY_POINT ACFRegisterPlugin(IACFUnknown* inHost, IACFPluginDefinition** outDefinition)
{
    return Contained([=] { return AAXRegisterPlugin(inHost, outDefinition); });
}

AAX_ENTRY_POINT ACFRegisterComponent(IACFUnknown* inHost, acfUInt32 inIndex,
                                     IACFComponentDefinition** outDefinition)
{
    return Contained([=] { return AAXRegisterComponent(inHost, inIndex, outDefinition); });
}

AAX_ENTRY_POINT ACFGetClassFactory(IACFUnknown* inHost, const acfCLSID& inClass, const acfIID& inIid,
                                   void** outFactory)
{
    return Contained([&] { return AAXGetClassFactory(inHost, inClass, inIid, outFactory); });
}

AAX_ENTRY_POINT ACFCanUnloadNow(IACFUnknown* inHost)
{
    return Contained([=] { return AAXCanUnloadNow(inHost); });
}

AAX_ENTRY_POINT ACFStartup(IACFUnknown* inHost)
{
    return Contained([=] { return AAXStartup(inHost); });
}

AAX_ENTRY_POINT ACFShutdown(IACFUnknown* inHost)
{
    return Contained([=] { return AAXShutdown(inHost); });
}

AAX_ENTRY_POINT ACFGetSDKVersion(std::uint64_t* outVersion)
{
    return Contained([=] { return AAXGetSDKVersion(outVersion); });
}
