#include "Interfaces/AAX/AAX_Module.h"

#include "Interfaces/ACF/CACFUnknown.h"
#include "Libs/AAXLibrary/source/AAX_CHostServices.h"
#include "Libs/AAXLibrary/source/AAX_VCollection.h"

namespace
{
constexpr std::uint64_t kInterfaceVersion = 0x000002000061125C;
}

ACFRESULT AAXRegisterPlugin(IACFUnknown* inHost, IACFPluginDefinition** outDefinition)
{
    if (outDefinition == nullptr)
        return kAAX_ErrorNullArgument;
    AAX_VCollection collection(inHost);
    const AAX_Result described = GetEffectDescriptions(&collection);
    if (described != kAAX_Success)
        return described;

    *outDefinition = nullptr;
    IACFUnknown* const unknown = collection.GetIUnknown();
    if (unknown == nullptr)
        return kAAX_ErrorNullObject;
    const ACFRESULT queried =
        unknown->QueryInterface(IID_IACFPluginDefinition, reinterpret_cast<void**>(outDefinition));
    return ACFFailed(queried) || *outDefinition == nullptr ? kAAX_ErrorNullObject : kAAX_Success;
}

ACFRESULT AAXRegisterComponent(IACFUnknown*, acfUInt32, IACFComponentDefinition** outDefinition)
{
    if (outDefinition == nullptr)
        return kAAX_ErrorNullArgument;
    *outDefinition = nullptr;
    return kAAX_Success;
}

ACFRESULT AAXGetClassFactory(IACFUnknown*, const acfCLSID&, const acfIID&, void** outFactory)
{
    if (outFactory == nullptr)
        return kAAX_ErrorNullArgument;
    *outFactory = nullptr;
    return kAAX_ErrorUnsupported;
}

ACFRESULT AAXCanUnloadNow(IACFUnknown*) { return CACFUnknown::GetActiveObjectCount(); }

ACFRESULT AAXStartup(IACFUnknown* inHost)
{
    AAX_CHostServices::Set(inHost);
    return kAAX_Success;
}

ACFRESULT AAXShutdown(IACFUnknown*)
{
    AAX_CHostServices::Set(nullptr);
    return kAAX_Success;
}

ACFRESULT AAXGetSDKVersion(std::uint64_t* outVersion)
{
    if (outVersion == nullptr)
        return kAAX_ErrorNullArgument;
    *outVersion = kInterfaceVersion;
    return kAAX_Success;
}
