#pragma once
#include <cstdint>

namespace VSTGUI
{
struct CColor
{
    std::uint8_t red = 255;
    std::uint8_t green = 255;
    std::uint8_t blue = 255;
    std::uint8_t alpha = 255;
};
inline constexpr CColor kGreyCColor{127, 127, 127, 255};
} // namespace VSTGUI
