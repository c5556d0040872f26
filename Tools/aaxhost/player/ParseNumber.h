#pragma once
#include <optional>
#include <string>

/** @return the decimal number that is the whole text, always finite; nothing for every other text. */
std::optional<double> ParseNumber(const std::string& inText);
