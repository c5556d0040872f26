#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "Interfaces/ACF/ACFInterfaces.h"

class AAX_ICollection;

/**
 * What stands behind the module's exported entry points, one function each.
 *
 * Threads: the host's loader thread, one call at a time. Exceptions may leave them; the entry points stop
 * them.
 */

/** Describes the module. @return kAAX_ErrorNullObject when the host offers no plug-in definition. */
ACFRESULT AAXRegisterPlugin(IACFUnknown* inHost, IACFPluginDefinition** outDefinition);
/** There are no components: a null definition and success. */
ACFRESULT AAXRegisterComponent(IACFUnknown* inHost, acfUInt32 inIndex,
                               IACFComponentDefinition** outDefinition);
/** There are no class factories: null and kAAX_ErrorUnsupported. */
ACFRESULT AAXGetClassFactory(IACFUnknown* inHost, const acfCLSID& inClass, const acfIID& inIid,
                             void** outFactory);
/** @return how many objects of the module are alive; 0 means that it may be unloaded. */
ACFRESULT AAXCanUnloadNow(IACFUnknown* inHost);
/** Takes over the host's services until `AAXShutdown`. */
ACFRESULT AAXStartup(IACFUnknown* inHost);
ACFRESULT AAXShutdown(IACFUnknown* inHost);
/** Writes the version of the interface that the module was built for. */
ACFRESULT AAXGetSDKVersion(std::uint64_t* outVersion);

/** Fills the host's collection with the module's effects; supplied by the plug-in side of the module. */
AAX_Result GetEffectDescriptions(AAX_ICollection* outCollection);
