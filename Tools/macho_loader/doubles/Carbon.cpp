#include "Tools/macho_loader/doubles/CMacSystem.h"
#include "Tools/macho_loader/doubles/FrameworkSymbols.h"

namespace
{
std::uint32_t GetCurrentButtonState() { return CMacSystem::Current().mButtons; }
std::uint32_t GetCurrentKeyModifiers() { return CMacSystem::Current().mModifiers; }
} // namespace

SymbolTable CarbonSymbols()
{
    return {
        {"GetCurrentButtonState", AddressOf(GetCurrentButtonState)},
        {"GetCurrentKeyModifiers", AddressOf(GetCurrentKeyModifiers)},
    };
}
