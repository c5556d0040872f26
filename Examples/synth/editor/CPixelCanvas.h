#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/** Red, green and blue of 0 to 255 in the lower 24 bits, from high to low. */
using Colour = std::uint32_t;

struct SPoint
{
    double mX = 0.0;
    double mY = 0.0;
};

/**
 * Shapes with smooth edges in memory, the same on every system. Coordinates are pixels from the left and from
 * the top; a pixel's middle is at a half.
 */
class CPixelCanvas
{
public:
    CPixelCanvas(int inWidth, int inHeight);

    int Width() const noexcept { return mWidth; }
    int Height() const noexcept { return mHeight; }
    /** Row by row from the top; the upper 8 bits are set. */
    std::span<const std::uint32_t> Pixels() const noexcept { return mPixels; }

    /** Everything, from one colour at the top to another at the bottom. */
    void Fill(Colour inTop, Colour inBottom) noexcept;
    void Box(SPoint inTopLeft, SPoint inBottomRight, double inRadius, Colour inColour) noexcept;
    void Disc(SPoint inCentre, double inRadius, Colour inColour) noexcept;
    void Line(SPoint inFrom, SPoint inTo, double inThickness, Colour inColour) noexcept;
    /** Part of a circle, its ends round. Angles are in radians, clockwise from the top, -pi to pi. */
    void Arc(SPoint inCentre, double inRadius, double inThickness, double inFrom, double inTo,
             Colour inColour) noexcept;

private:
    /** Covers what is inside: where the function gives less than 0 for a point, in pixels from the edge. */
    template <class Distance>
    void Cover(SPoint inTopLeft, SPoint inBottomRight, Colour inColour, Distance inDistance) noexcept;

    int mWidth = 0;
    int mHeight = 0;
    std::vector<std::uint32_t> mPixels;
};
