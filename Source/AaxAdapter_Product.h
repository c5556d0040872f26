#pragma once
#include "Source/plugins/ProductOptions.h"

#include <cstdint>

/**
 * What makes a module one maker's product, beside the options of ProductOptions.h. A product's generated
 * source defines these; the values are arguments of `add_aax_adapter`.
 */

/** Identifies the effect towards hosts: a reverse-domain name. */
extern const char* const kEffectID_AaxAdapter;

/** Identifies the maker: a four-character code, first character most significant. */
extern const std::uint32_t kManufacturerID;
