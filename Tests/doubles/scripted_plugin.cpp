#include "Tests/doubles/ScriptedEffect.h"

#define SCRIPTED_EXPORT extern "C" __attribute__((visibility("default")))

namespace
{
SPluginScript& Script()
{
    static SPluginScript script;
    return script;
}
} // namespace

SCRIPTED_EXPORT SPluginScript* GetPluginScript() { return &Script(); }

#if defined(SCRIPTED_ENTRY)
SCRIPTED_EXPORT AEffect* SCRIPTED_ENTRY(audioMasterCallback inHost)
{
#if defined(SCRIPTED_ENTRY_THROWS)
    Script().mFaults.insert(SPluginScript::kEntry);
#endif
    return Script().Enter(inHost);
}
#endif
