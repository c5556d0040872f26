#pragma once
#include "Tools/aaxhost/report/HtmlText.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

struct STick
{
    double mPosition = 0.0; // 0 to 1
    std::string mText;
};
/** A tick every half second. */
std::vector<STick> SecondTicks(double inSeconds);

enum class EChartSize
{
    Wide, // two beside each other
    Small // one of many
};

/**
 * A drawing over two axes, as an SVG element that takes its colours from the page's classes.
 *
 * Positions are 0 to 1, left to right and bottom to top; what is outside is cut.
 */
class CHtmlChart
{
public:
    /** @param inTitle what a screen reader says instead of the picture. */
    explicit CHtmlChart(std::string inTitle, EChartSize inSize = EChartSize::Wide);

    /** What the axes show, with its unit: "time (s)". */
    void SetAxes(std::string inHorizontal, std::string inVertical);
    /** What there is to see, in a sentence, for those who do not see it. */
    void SetSummary(std::string inSummary) { mSummary = std::move(inSummary); }
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
    /** A picture over the whole area, under all lines. @param inPng its file, in Base64. */
    void SetPicture(const std::string& inPng);
    std::string Svg() const;

private:
    struct SArea
    {
        double mWidth;
        double mHeight;
        double mLeft;
        double mRight;
        double mTop;
        double mBottom;
    };
    double PlaceX(double inPart) const;
    double PlaceY(double inPart) const;

    std::string mTitle;
    std::string mSummary;
    const SArea mArea;
    std::string mHorizontalAxis;
    std::string mVerticalAxis;
    std::vector<STick> mHorizontal;
    std::vector<STick> mVertical;
    std::string mPicture;
    std::string mShapes;
};

using Points = std::vector<CHtmlChart::SPoint>;
