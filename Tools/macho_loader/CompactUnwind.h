#pragma once
#include "Tools/macho_loader/ByteAppend.h"

#include <cstdint>
#include <span>

/**
 * Says in DWARF call-frame instructions what a compact encoding says: where the caller's frame starts and
 * where the return address and the saved registers lie.
 *
 * @param inEncoding of the modes with and without frame pointer. Throws CMachOError for another one.
 * @param inCode     the function's code; some encodings refer to it.
 */
ByteVector FrameInstructions(std::uint32_t inEncoding, std::span<const std::uint8_t> inCode);
