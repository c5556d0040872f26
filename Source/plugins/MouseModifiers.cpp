#include "Source/plugins/MouseModifiers.h"

#include "Platform/PointerState.h"

unsigned long ModifierBits(const SPointerState& inState) noexcept
{
    unsigned long bits = kMouseModAlways;
    bits |= inState.mShift ? kMouseModShift : 0UL;
    bits |= inState.mCommand ? kMouseModCommand : 0UL;
    bits |= inState.mSecondaryButton || inState.mControl ? kMouseModSecondary : 0UL;
    return bits;
}

unsigned long getMouseMods() noexcept { return ModifierBits(GetPointerState()); }
