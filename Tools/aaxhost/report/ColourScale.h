#pragma once
#include <cstdint>
#include <string>

struct SColour
{
    std::uint8_t mRed = 0;
    std::uint8_t mGreen = 0;
    std::uint8_t mBlue = 0;
};

/** From dark violet at 0 to light yellow at 1, ever lighter, so that it reads without hues and in print. */
SColour ScaleColour(double inPart);

/** The scale with what its ends mean, as an SVG element; the numbers go up in equal steps. */
std::string ColourLegend(double inLowest, double inHighest, int inSteps, const std::string& inUnit);
