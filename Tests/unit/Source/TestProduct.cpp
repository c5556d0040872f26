#include "Source/AaxAdapter_Product.h"

const char* const kEffectID_AaxAdapter = "com.example.test";
const std::uint32_t kManufacturerID = 0x54737431; // "Tst1"
RenderCallback ProductRenderCallback() noexcept { return PlainRenderCallback(); }
SInstanceFactories ProductInstanceFactories() noexcept { return PlainInstanceFactories(); }
