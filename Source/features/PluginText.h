#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/**
 * A plug-in's text as a host may show it: control characters are spaces, bytes that are no UTF-8 question
 * marks, and spaces at both ends are gone. No longer than the text.
 */
std::string CleanText(std::string_view inText);

/** A clean text in at most so many bytes, without a blank at the cut; a negative number counts as 0. */
std::string ShortenedText(std::string inText, std::int32_t inMostBytes);
