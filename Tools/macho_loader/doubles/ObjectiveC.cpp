#include "Tools/macho_loader/doubles/CMacSystem.h"
#include "Tools/macho_loader/doubles/FrameworkSymbols.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace
{
void* AutoreleasePoolPush()
{
    CMacSystem& system = CMacSystem::Current();
    int& pool = system.MakePool();
    system.Pools().push_back(&pool);
    system.Calls().Add("objc_autoreleasePoolPush -> pool" + std::to_string(pool));
    return &pool;
}

/** Ends the pools inside it as well. */
void AutoreleasePoolPop(void* inPool)
{
    CMacSystem& system = CMacSystem::Current();
    const auto found = std::ranges::find(system.Pools(), inPool);
    if (found == system.Pools().end())
    {
        (void)std::fputs("objc_autoreleasePoolPop: no open pool\n", stderr);
        std::abort();
    }
    system.Calls().Add("objc_autoreleasePoolPop pool" + std::to_string(**found));
    system.Pools().erase(found, system.Pools().end());
}
} // namespace

SymbolTable ObjectiveCSymbols()
{
    return {
        {"objc_autoreleasePoolPush", AddressOf(AutoreleasePoolPush)},
        {"objc_autoreleasePoolPop", AddressOf(AutoreleasePoolPop)},
    };
}
