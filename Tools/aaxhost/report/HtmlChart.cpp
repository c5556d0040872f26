#include "Tools/aaxhost/report/HtmlChart.h"

#include <algorithm>
#include <fmt/format.h>

namespace
{
// The page shows a chart at about this width beside another one, and narrower on a phone.
constexpr double kWidth = 480.0;
constexpr double kHeight = 220.0;
constexpr double kLeft = 60.0;
constexpr double kRight = 14.0;
constexpr double kTop = 10.0;
constexpr double kBottom = 26.0;

double PlaceX(double inPart) { return kLeft + std::clamp(inPart, 0.0, 1.0) * (kWidth - kLeft - kRight); }
double PlaceY(double inPart)
{
    return kHeight - kBottom - std::clamp(inPart, 0.0, 1.0) * (kHeight - kTop - kBottom);
}

} // namespace

CHtmlChart::CHtmlChart(std::string inTitle) : mTitle(std::move(inTitle)) {}

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

std::string CHtmlChart::Svg() const
{
    std::string svg =
        fmt::format("<svg class=\"chart\" viewBox=\"0 0 {} {}\" role=\"img\" aria-label=\"{}\">\n", kWidth,
                    kHeight, Escaped(mTitle));
    for (const STick& tick : mVertical)
    {
        const double y = PlaceY(tick.mPosition);
        svg += fmt::format("<line class=\"grid\" x1=\"{}\" x2=\"{}\" y1=\"{:.1f}\" y2=\"{:.1f}\"/>"
                           "<text class=\"tick end\" x=\"{}\" y=\"{:.1f}\">{}</text>\n",
                           kLeft, kWidth - kRight, y, y, kLeft - 6.0, y + 4.0, Escaped(tick.mText));
    }
    for (const STick& tick : mHorizontal)
    {
        const double x = PlaceX(tick.mPosition);
        svg += fmt::format("<line class=\"grid\" x1=\"{0:.1f}\" x2=\"{0:.1f}\" y1=\"{1}\" y2=\"{2}\"/>"
                           "<text class=\"tick middle\" x=\"{0:.1f}\" y=\"{3}\">{4}</text>\n",
                           x, kTop, kHeight - kBottom, kHeight - 8.0, Escaped(tick.mText));
    }
    return svg + mShapes + "</svg>\n";
}
