#include "Examples/synth/editor/CPixelCanvas.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr std::uint32_t kOpaque = 0xFF000000;

/** @param inPart 0: the first colour, 1: the second. */
Colour Mix(Colour inFirst, Colour inSecond, double inPart) noexcept
{
    Colour mixed = kOpaque;
    for (const unsigned shift : {0U, 8U, 16U})
    {
        const double first = (inFirst >> shift) & 0xFF;
        const double second = (inSecond >> shift) & 0xFF;
        mixed |= static_cast<Colour>(std::lround(first + inPart * (second - first))) << shift;
    }
    return mixed;
}

double DistanceToSegment(SPoint inPoint, SPoint inFrom, SPoint inTo) noexcept
{
    const SPoint along{inTo.mX - inFrom.mX, inTo.mY - inFrom.mY};
    const double square = along.mX * along.mX + along.mY * along.mY;
    const double part =
        square > 0.0 ? ((inPoint.mX - inFrom.mX) * along.mX + (inPoint.mY - inFrom.mY) * along.mY) / square
                     : 0.0;
    const double nearest = std::clamp(part, 0.0, 1.0);
    return std::hypot(inPoint.mX - inFrom.mX - nearest * along.mX,
                      inPoint.mY - inFrom.mY - nearest * along.mY);
}
} // namespace

CPixelCanvas::CPixelCanvas(int inWidth, int inHeight)
    : mWidth(inWidth),
      mHeight(inHeight),
      mPixels(static_cast<std::size_t>(inWidth) * static_cast<std::size_t>(inHeight))
{
}

template <class Distance>
void CPixelCanvas::Cover(SPoint inTopLeft, SPoint inBottomRight, Colour inColour,
                         Distance inDistance) noexcept
{
    const int left = std::max(0, static_cast<int>(std::floor(inTopLeft.mX)) - 1);
    const int top = std::max(0, static_cast<int>(std::floor(inTopLeft.mY)) - 1);
    const int right = std::min(mWidth, static_cast<int>(std::ceil(inBottomRight.mX)) + 1);
    const int bottom = std::min(mHeight, static_cast<int>(std::ceil(inBottomRight.mY)) + 1);
    for (int y = top; y < bottom; ++y)
    {
        for (int x = left; x < right; ++x)
        {
            const double coverage = std::clamp(0.5 - inDistance(SPoint{x + 0.5, y + 0.5}), 0.0, 1.0);
            std::uint32_t& pixel = mPixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(mWidth) +
                                           static_cast<std::size_t>(x)];
            pixel = coverage > 0.0 ? Mix(pixel, inColour, coverage) : pixel;
        }
    }
}

void CPixelCanvas::Fill(Colour inTop, Colour inBottom) noexcept
{
    for (int y = 0; y < mHeight; ++y)
    {
        const auto row = mPixels.begin() + static_cast<std::ptrdiff_t>(y) * mWidth;
        std::fill(row, row + mWidth, Mix(inTop, inBottom, static_cast<double>(y) / mHeight));
    }
}

void CPixelCanvas::Box(SPoint inTopLeft, SPoint inBottomRight, double inRadius, Colour inColour) noexcept
{
    const SPoint middle{(inTopLeft.mX + inBottomRight.mX) / 2.0, (inTopLeft.mY + inBottomRight.mY) / 2.0};
    const SPoint half{middle.mX - inTopLeft.mX - inRadius, middle.mY - inTopLeft.mY - inRadius};
    Cover(inTopLeft, inBottomRight, inColour,
          [=](SPoint inPoint)
          {
              const double x = std::abs(inPoint.mX - middle.mX) - half.mX;
              const double y = std::abs(inPoint.mY - middle.mY) - half.mY;
              return std::hypot(std::max(x, 0.0), std::max(y, 0.0)) + std::min(std::max(x, y), 0.0) -
                     inRadius;
          });
}

void CPixelCanvas::Disc(SPoint inCentre, double inRadius, Colour inColour) noexcept
{
    Line(inCentre, inCentre, 2.0 * inRadius, inColour);
}

void CPixelCanvas::Line(SPoint inFrom, SPoint inTo, double inThickness, Colour inColour) noexcept
{
    const double reach = inThickness / 2.0;
    Cover({std::min(inFrom.mX, inTo.mX) - reach, std::min(inFrom.mY, inTo.mY) - reach},
          {std::max(inFrom.mX, inTo.mX) + reach, std::max(inFrom.mY, inTo.mY) + reach}, inColour,
          [=](SPoint inPoint) { return DistanceToSegment(inPoint, inFrom, inTo) - reach; });
}

void CPixelCanvas::Arc(SPoint inCentre, double inRadius, double inThickness, double inFrom, double inTo,
                       Colour inColour) noexcept
{
    const double reach = inRadius + inThickness / 2.0;
    const auto at = [=](double inAngle) {
        return SPoint{inCentre.mX + inRadius * std::sin(inAngle), inCentre.mY - inRadius * std::cos(inAngle)};
    };
    const SPoint from = at(inFrom);
    const SPoint to = at(inTo);
    Cover({inCentre.mX - reach, inCentre.mY - reach}, {inCentre.mX + reach, inCentre.mY + reach}, inColour,
          [=](SPoint inPoint)
          {
              const SPoint arm{inPoint.mX - inCentre.mX, inPoint.mY - inCentre.mY};
              const double angle = std::atan2(arm.mX, -arm.mY);
              const double distance =
                  angle >= inFrom && angle <= inTo
                      ? std::abs(std::hypot(arm.mX, arm.mY) - inRadius)
                      : std::min(DistanceToSegment(inPoint, from, from), DistanceToSegment(inPoint, to, to));
              return distance - inThickness / 2.0;
          });
}
