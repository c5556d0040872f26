#include "Tools/aaxhost/report/sections/Ticks.h"

#include <fmt/format.h>

std::vector<STick> SecondTicks(double inSeconds)
{
    std::vector<STick> ticks;
    constexpr double step = 0.5;
    const int count = static_cast<int>(inSeconds / step + 1e-9);
    for (int i = 0; i <= count; ++i)
        ticks.push_back({inSeconds > 0.0 ? step * i / inSeconds : 0.0, fmt::format("{}", step * i)});
    return ticks;
}
