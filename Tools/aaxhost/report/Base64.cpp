#include "Tools/aaxhost/report/Base64.h"

#include <cstdint>

std::string Base64(const std::string& inBytes)
{
    static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < inBytes.size(); i += 3)
    {
        std::uint32_t bits = 0;
        for (std::size_t j = 0; j < 3; ++j)
            bits = bits << 8 | (i + j < inBytes.size() ? static_cast<std::uint8_t>(inBytes[i + j]) : 0U);
        for (std::size_t j = 0; j < 4; ++j)
            text += j > inBytes.size() - i ? '=' : kDigits[bits >> (18 - 6 * j) & 63U];
    }
    return text;
}
