#pragma once
#include "Tools/macho_loader/CEhFrameWriter.h"

#include <cstdint>
#include <span>

/**
 * Reads one function's entry of a section __eh_frame that is in memory, without handler and language data,
 * which the compact table gives.
 *
 * @param inOffset of the entry in the section. Throws CMachOError for an entry of another form than clang's.
 */
SUnwindFunction ReadDwarfFrame(std::span<const std::uint8_t> inSection, std::uint32_t inOffset);
