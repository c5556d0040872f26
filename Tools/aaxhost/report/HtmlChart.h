#pragma once
#include "Tools/aaxhost/report/HtmlText.h"

#include <span>
#include <string>
#include <vector>

struct STick
{
    double mPosition = 0.0; // 0 to 1
    std::string mText;
};

/**
 * A drawing of lines over two axes, as an SVG element that takes its colours from the page's classes.
 *
 * Positions are 0 to 1, left to right and bottom to top; what is outside is cut.
 */
class CHtmlChart
{
public:
    /** @param inTitle what a screen reader says instead of the picture. */
    explicit CHtmlChart(std::string inTitle);

    void SetHorizontalTicks(std::vector<STick> inTicks) { mHorizontal = std::move(inTicks); }
    void SetVerticalTicks(std::vector<STick> inTicks) { mVertical = std::move(inTicks); }
    struct SPoint
    {
        double mX = 0.0;
        double mY = 0.0;
    };
    /** @param inClass how the page draws it: "a" or "b", with " dots" where each point is marked. */
    void AddLine(std::span<const SPoint> inPoints, const std::string& inClass);
    /** The area between two lines of as many points. */
    void AddBand(std::span<const SPoint> inLower, std::span<const SPoint> inUpper,
                 const std::string& inClass);
    std::string Svg() const;

private:
    std::string mTitle;
    std::vector<STick> mHorizontal;
    std::vector<STick> mVertical;
    std::string mShapes;
};
