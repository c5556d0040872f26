#pragma once
#include <span>

/**
 * Finds the file of the module (program or loadable bundle) that contains a piece of code.
 *
 * @param inCodeAddress any address inside the module's code or data.
 * @param outPath receives the NUL-terminated path as the loader knows it; the empty text when the result is
 * false.
 * @return false when the address belongs to no module or the path does not fit.
 */
bool FindModulePath(const void* inCodeAddress, std::span<char> outPath) noexcept;
