#include "Platform/PointerState.h"

#include <cstdint>

#include <Carbon/Carbon.h>

namespace
{
constexpr std::uint32_t kPrimaryButton = 1U << 0;
constexpr std::uint32_t kSecondaryButton = 1U << 1;
} // namespace

SPointerState GetPointerState() noexcept
{
    const std::uint32_t buttons = GetCurrentButtonState();
    const std::uint32_t keys = GetCurrentKeyModifiers();
    SPointerState state;
    state.mPrimaryButton = (buttons & kPrimaryButton) != 0;
    state.mSecondaryButton = (buttons & kSecondaryButton) != 0;
    state.mShift = (keys & static_cast<std::uint32_t>(shiftKey)) != 0;
    state.mCommand = (keys & static_cast<std::uint32_t>(cmdKey)) != 0;
    state.mOption = (keys & static_cast<std::uint32_t>(optionKey)) != 0;
    state.mControl = (keys & static_cast<std::uint32_t>(controlKey)) != 0;
    return state;
}
