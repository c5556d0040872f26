#pragma once
#include <cstddef>
#include <string>
#include <string_view>

/**
 * A plug-in's text as a host may show it: control characters are spaces, bytes that are no UTF-8 question
 * marks, and spaces at both ends are gone. No longer than the text.
 */
std::string CleanText(std::string_view inText);

/** As many whole characters of it as have room in so many bytes. */
std::string_view FirstCharacters(std::string_view inText, std::size_t inMostBytes) noexcept;
