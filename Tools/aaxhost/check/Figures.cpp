#include "Tools/aaxhost/check/Figures.h"

#include <cmath>
#include <fmt/format.h>

std::string InDecibels(double inLevel)
{
    return inLevel > 0.0 ? fmt::format("{:.1f} dB", 20.0 * std::log10(inLevel)) : std::string("silence");
}

std::string InSamples(std::int64_t inSamples, double inRate)
{
    return fmt::format("{} ({:.2f} ms)", Counted(inSamples, "sample"),
                       1000.0 * static_cast<double>(inSamples) / inRate);
}

std::string InBytes(double inBytes)
{
    constexpr double kibi = 1024.0;
    return std::abs(inBytes) < kibi * kibi ? fmt::format("{:.1f} KiB", inBytes / kibi)
                                           : fmt::format("{:.1f} MiB", inBytes / kibi / kibi);
}

std::string Counted(std::int64_t inCount, const std::string& inNoun)
{
    return fmt::format("{} {}{}", inCount, inNoun, inCount == 1 ? "" : "s");
}
