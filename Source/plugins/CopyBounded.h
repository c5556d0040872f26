#pragma once
#include <algorithm>
#include <cstddef>
#include <span>

/**
 * Copies a text into a field of fixed length: as much as fits before the terminator, the rest of the field
 * zeroed.
 * @param inText null counts as empty. At most as many characters as the field has are read, so a text without
 * a terminator is safe when it is at least that long.
 */
inline void CopyBounded(std::span<char> outField, const char* inText) noexcept
{
    std::size_t length = 0;
    while (inText != nullptr && length + 1 < outField.size() && inText[length] != '\0')
    {
        outField[length] = inText[length];
        ++length;
    }
    std::fill(outField.begin() + static_cast<std::ptrdiff_t>(length), outField.end(), '\0');
}
