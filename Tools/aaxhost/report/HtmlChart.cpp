#include "Tools/aaxhost/report/HtmlChart.h"

#include <algorithm>
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

CHtmlChart::CHtmlChart(std::string inTitle, EChartSize inSize)
    : mTitle(std::move(inTitle)),
      // The page shows the wide one at about this width beside another one, and narrower on a phone.
      mArea(inSize == EChartSize::Wide ? SArea{480.0, 250.0, 60.0, 22.0, 26.0, 44.0}
                                       : SArea{240.0, 170.0, 46.0, 10.0, 24.0, 26.0})
{
}

double CHtmlChart::PlaceX(double inPart) const
{
    return mArea.mLeft + std::clamp(inPart, 0.0, 1.0) * (mArea.mWidth - mArea.mLeft - mArea.mRight);
}

double CHtmlChart::PlaceY(double inPart) const
{
    return mArea.mHeight - mArea.mBottom -
           std::clamp(inPart, 0.0, 1.0) * (mArea.mHeight - mArea.mTop - mArea.mBottom);
}

void CHtmlChart::SetAxes(std::string inHorizontal, std::string inVertical)
{
    mHorizontalAxis = std::move(inHorizontal);
    mVerticalAxis = std::move(inVertical);
}

void CHtmlChart::AddLine(std::span<const SPoint> inPoints, const std::string& inClass)
{
    std::string path;
    for (const SPoint& point : inPoints)
        path += fmt::format("{:.1f},{:.1f} ", PlaceX(point.mX), PlaceY(point.mY));
    mShapes += fmt::format("<polyline class=\"line {}\" points=\"{}\"/>\n", inClass, path);
    if (inClass.find("dots") != std::string::npos)
        for (const SPoint& point : inPoints)
            mShapes += fmt::format("<circle class=\"dot {}\" cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"3\"/>\n",
                                   inClass, PlaceX(point.mX), PlaceY(point.mY));
}

void CHtmlChart::AddBand(std::span<const SPoint> inLower, std::span<const SPoint> inUpper,
                         const std::string& inClass)
{
    std::string path;
    for (const SPoint& point : inUpper)
        path += fmt::format("{:.1f},{:.1f} ", PlaceX(point.mX), PlaceY(point.mY) - 0.4);
    for (std::size_t i = inLower.size(); i-- > 0;)
        path += fmt::format("{:.1f},{:.1f} ", PlaceX(inLower[i].mX), PlaceY(inLower[i].mY) + 0.4);
    mShapes += fmt::format("<polygon class=\"band {}\" points=\"{}\"/>\n", inClass, path);
}

void CHtmlChart::SetPicture(const std::string& inPng)
{
    mPicture =
        fmt::format("<image x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" preserveAspectRatio=\"none\" "
                    "href=\"data:image/png;base64,{}\"/>\n",
                    PlaceX(0.0), PlaceY(1.0), PlaceX(1.0) - PlaceX(0.0), PlaceY(0.0) - PlaceY(1.0), inPng);
}

std::string CHtmlChart::Svg() const
{
    const bool isSmall = mArea.mWidth < 400.0;
    const std::string said = mTitle + (mSummary.empty() ? "" : ". " + mSummary);
    std::string svg =
        fmt::format("<svg class=\"{}\" viewBox=\"0 0 {} {}\" role=\"img\" aria-label=\"{}\">\n{}",
                    isSmall ? "chart small" : "chart", mArea.mWidth, mArea.mHeight, Escaped(said), mPicture);
    for (const STick& tick : mVertical)
    {
        const double y = PlaceY(tick.mPosition);
        svg += fmt::format("<line class=\"grid\" x1=\"{}\" x2=\"{}\" y1=\"{:.1f}\" y2=\"{:.1f}\"/>"
                           "<text class=\"tick end\" x=\"{}\" y=\"{:.1f}\">{}</text>\n",
                           mArea.mLeft, mArea.mWidth - mArea.mRight, y, y, mArea.mLeft - 6.0, y + 4.0,
                           Escaped(tick.mText));
    }
    const double bottom = mArea.mHeight - mArea.mBottom;
    for (const STick& tick : mHorizontal)
    {
        const double x = PlaceX(tick.mPosition);
        // The texts of a small one are long, and stand within its ends.
        const char* const anchor = !isSmall ? "middle" : tick.mPosition < 0.5 ? "begin" : "end";
        svg += fmt::format("<line class=\"grid\" x1=\"{0:.1f}\" x2=\"{0:.1f}\" y1=\"{1}\" y2=\"{2}\"/>"
                           "<text class=\"tick {5}\" x=\"{0:.1f}\" y=\"{3}\">{4}</text>\n",
                           x, mArea.mTop, bottom, bottom + 17.0, Escaped(tick.mText), anchor);
    }
    if (!mVerticalAxis.empty())
        svg += fmt::format("<text class=\"axis\" x=\"4\" y=\"13\">{}</text>\n", Escaped(mVerticalAxis));
    if (!mHorizontalAxis.empty())
        svg += fmt::format("<text class=\"axis end\" x=\"{}\" y=\"{}\">{}</text>\n",
                           mArea.mWidth - mArea.mRight, mArea.mHeight - 6.0, Escaped(mHorizontalAxis));
    return svg + mShapes + "</svg>\n";
}
