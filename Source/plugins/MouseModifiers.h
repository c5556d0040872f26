#pragma once

struct SPointerState;

/** Bits that go with an edit gesture. */
enum EMouseModifiers : unsigned long
{
    kMouseModShift = 1,
    kMouseModCommand = 2,
    kMouseModAlways = 4,
    kMouseModSecondary = 16 // the secondary button or the control key
};

unsigned long ModifierBits(const SPointerState& inState) noexcept;
/** @return the bits for what is down right now. Threads: any; may wait for the display server. */
unsigned long getMouseMods() noexcept;
