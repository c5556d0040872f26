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

constexpr bool IsPlain(char inCharacter) noexcept { return inCharacter >= ' ' && inCharacter <= '~'; }

constexpr std::string_view Trimmed(std::string_view inText) noexcept
{
    while (inText.starts_with(' '))
        inText.remove_prefix(1);
    while (inText.ends_with(' '))
        inText.remove_suffix(1);
    return inText;
}

/** As many whole characters of it as have room in so many bytes. */
std::string_view FirstCharacters(std::string_view inText, std::size_t inMostBytes) noexcept
{
    std::size_t size = std::min(inText.size(), inMostBytes);
    while (size > 0 && size < inText.size() && (ByteAt(inText, size) & 0xC0U) == 0x80U)
        --size; // it would cut a character
    return inText.substr(0, size);
}
} // namespace

std::string CleanText(std::string_view inText)
{
    // Nearly all are plain, and hosts ask for many.
    if (std::ranges::all_of(inText, IsPlain))
        return std::string(Trimmed(inText));
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
    return std::string(Trimmed(text));
}

std::string ShortenedText(std::string inText, std::int32_t inMostBytes)
{
    const auto most = static_cast<std::size_t>(std::max(inMostBytes, 0));
    if (inText.size() > most)
        inText.resize(Trimmed(FirstCharacters(inText, most)).size()); // it begins with no blank
    return inText;
}
