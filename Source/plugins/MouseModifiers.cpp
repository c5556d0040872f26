#include "Source/plugins/MouseModifiers.h"

#include "Platform/PointerState.h"

unsigned long ModifierBits(const SPointerState& inState) noexcept
{
    unsigned long bits = kMouseModAlways;
    bits |= inState.shift ? kMouseModShift : 0UL;
    bits |= inState.command ? kMouseModCommand : 0UL;
    bits |= inState.secondaryButton || inState.control ? kMouseModSecondary : 0UL;
    return bits;
}

unsigned long getMouseMods() noexcept { return ModifierBits(GetPointerState()); }
