#pragma once

/** Mouse buttons and modifier keys that are down. */
struct SPointerState
{
    bool mPrimaryButton = false;
    bool mSecondaryButton = false;
    bool mShift = false;
    bool mCommand = false; // the Super key where keyboards have no command key
    bool mOption = false;
    bool mControl = false;
};

/**
 * @return what is down right now; nothing when the system can't say (on Linux: no display server).
 *
 * Threads: any; may wait for the display server, so not for the render path.
 */
SPointerState GetPointerState() noexcept;
