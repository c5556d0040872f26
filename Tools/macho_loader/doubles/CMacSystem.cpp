#include "Tools/macho_loader/doubles/CMacSystem.h"

#include "Tools/macho_loader/doubles/FrameworkSymbols.h"

#include <cstdio>
#include <cstdlib>

namespace
{
// The doubles are plain functions, which get no context. One thread: the test's.
CMacSystem* gCurrent = nullptr;

[[noreturn]] void Abort(const char* inReason)
{
    (void)std::fprintf(stderr, "CMacSystem: %s\n", inReason);
    std::abort();
}

LibraryTable Frameworks()
{
    return {
        {"/System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation",
         CoreFoundationSymbols()},
        {"/System/Library/Frameworks/Carbon.framework/Versions/A/Carbon", CarbonSymbols()},
        {"/usr/lib/libobjc.A.dylib", ObjectiveCSymbols()},
    };
}
} // namespace

CMacSystem::CMacSystem() : mLoader(Frameworks()), mObjects(mLoader)
{
    if (gCurrent != nullptr)
        Abort("there is one already");
    gCurrent = this;
}

CMacSystem::~CMacSystem()
{
    mLoader.UnloadAll(); // what runs at an image's end may still call the system
    gCurrent = nullptr;
}

CMacSystem& CMacSystem::Current()
{
    if (gCurrent == nullptr)
        Abort("there is none");
    return *gCurrent;
}
