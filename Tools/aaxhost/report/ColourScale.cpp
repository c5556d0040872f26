#include "Tools/aaxhost/report/ColourScale.h"

#include "Tools/aaxhost/report/HtmlText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fmt/format.h>

SColour ScaleColour(double inPart)
{
    using Stop = std::array<double, 3>;
    static constexpr Stop kStops[] = {{20.0, 12.0, 46.0},   {72.0, 22.0, 106.0},  {143.0, 42.0, 111.0},
                                      {212.0, 75.0, 80.0},  {246.0, 140.0, 44.0}, {252.0, 208.0, 88.0},
                                      {252.0, 255.0, 200.0}};
    constexpr std::size_t last = std::size(kStops) - 1;
    const double place = std::clamp(inPart, 0.0, 1.0) * static_cast<double>(last);
    const auto stop = std::min(static_cast<std::size_t>(place), last - 1);
    const double part = place - static_cast<double>(stop);
    const auto mixed = [&](std::size_t channel)
    {
        const double value = kStops[stop][channel] * (1.0 - part) + kStops[stop + 1][channel] * part;
        return static_cast<std::uint8_t>(std::lround(value));
    };
    return {mixed(0), mixed(1), mixed(2)};
}

std::string ColourLegend(double inLowest, double inHighest, int inSteps, const std::string& inUnit)
{
    constexpr double left = 60.0;
    constexpr double width = 398.0; // those of a chart
    constexpr int patches = 58;
    std::string svg = fmt::format("<svg class=\"legend\" viewBox=\"0 0 480 34\" role=\"img\" "
                                  "aria-label=\"Colours from dark at {:g} to light at {:g} {}\">\n",
                                  inLowest, inHighest, Escaped(inUnit));
    for (int i = 0; i < patches; ++i)
    {
        const SColour colour = ScaleColour(static_cast<double>(i) / (patches - 1));
        svg += fmt::format("<rect x=\"{:.1f}\" y=\"2\" width=\"{:.1f}\" height=\"9\" "
                           "fill=\"#{:02x}{:02x}{:02x}\"/>\n",
                           left + width * i / patches, width / patches + 0.5, colour.mRed, colour.mGreen,
                           colour.mBlue);
    }
    for (int i = 0; i <= inSteps; ++i)
        svg += fmt::format("<text class=\"tick {}\" x=\"{:.1f}\" y=\"27\">{:g}{}</text>\n",
                           i == 0         ? "begin"
                           : i == inSteps ? "end"
                                          : "middle",
                           left + width * i / inSteps, inLowest + (inHighest - inLowest) * i / inSteps,
                           i == inSteps ? " " + Escaped(inUnit) : std::string());
    return svg + "</svg>\n";
}
