#include "Tools/aaxhost/player/ParseNumber.h"

#include <cmath>
#include <cstdlib>

std::optional<double> ParseNumber(const std::string& inText)
{
    // strtod alone takes leading blanks, hexadecimal numbers and words for what is no number.
    if (inText.empty() || inText.find_first_not_of("+-.0123456789eE") != std::string::npos)
        return std::nullopt;
    char* end = nullptr;
    const double value = std::strtod(inText.c_str(), &end);
    if (end != inText.c_str() + inText.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}
