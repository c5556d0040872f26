#include "Source/features/PluginText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace
{
constexpr std::uint8_t ByteAt(std::string_view inText, std::size_t inPlace) noexcept
{
    return static_cast<std::uint8_t>(inText[inPlace]);
}

/** Bytes of a character by its first one; 0 where none begins so. */
constexpr std::size_t CharacterSize(std::uint8_t inFirst) noexcept
{
    if (inFirst < 0x80)
        return 1;
    if (inFirst < 0xC0)
        return 0;
    return inFirst < 0xE0 ? 2 : inFirst < 0xF0 ? 3 : inFirst < 0xF8 ? 4 : 0;
}

/** @return bytes of the character that the text begins with; 0 where that is none. */
constexpr std::size_t FirstCharacter(std::string_view inText) noexcept
{
    constexpr char32_t lowest[] = {0, 0, 0x80, 0x800, 0x10000}; // of that many bytes
    const std::size_t size = CharacterSize(ByteAt(inText, 0));
    if (size <= 1 || size > inText.size())
        return size <= inText.size() ? size : 0;
    char32_t character = ByteAt(inText, 0) & (0xFFU >> (size + 1));
    for (std::size_t i = 1; i < size; ++i)
    {
        if ((ByteAt(inText, i) & 0xC0U) != 0x80U)
            return 0;
        character = character << 6 | (ByteAt(inText, i) & 0x3FU);
    }
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    return character >= lowest[size] && character <= 0x10FFFF && !isSurrogate ? size : 0;
}

constexpr bool IsControl(char inCharacter) noexcept
{
    return static_cast<std::uint8_t>(inCharacter) < 0x20 || inCharacter == 0x7F;
}
} // namespace

std::string CleanText(std::string_view inText)
{
    std::string text;
    text.reserve(inText.size());
    while (!inText.empty())
    {
        const std::size_t size = FirstCharacter(inText);
        if (size == 0)
            text += '?';
        else
            text += inText.substr(0, size);
        inText.remove_prefix(std::max<std::size_t>(size, 1));
    }
    std::ranges::replace_if(text, IsControl, ' ');
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? std::string()
                                      : text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

std::string_view FirstCharacters(std::string_view inText, std::size_t inMostBytes) noexcept
{
    std::size_t size = std::min(inText.size(), inMostBytes);
    while (size > 0 && size < inText.size() && (ByteAt(inText, size) & 0xC0U) == 0x80U)
        --size; // it would cut a character
    return inText.substr(0, size);
}
