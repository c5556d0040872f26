#include "Tools/aaxhost/report/HtmlChart.h"
#include "Tools/aaxhost/report/Spectrum.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

namespace
{
constexpr double kRate = 48000.0; // Hz
constexpr std::size_t kPoints = 200;

/** A sine of a whole number of periods in the 4,096 samples that are used. */
std::vector<float> Sine(double inHertz, double inAmplitude)
{
    std::vector<float> signal(4100); // of which 4096 are used
    for (std::size_t i = 0; i < signal.size(); ++i)
        signal[i] = static_cast<float>(
            inAmplitude * std::sin(2.0 * std::numbers::pi * inHertz * static_cast<double>(i) / kRate));
    return signal;
}

TEST(Spectrum, IsInDecibelsOfFullScaleAtTheFrequencyOfTheSine)
{
    for (const double hertz : {375.0, 3000.0, 12000.0})
        for (const double amplitude : {1.0, 0.1})
        {
            SCOPED_TRACE(testing::Message() << amplitude << " at " << hertz << " Hz");
            const std::vector<double> levels = SpectrumOf(Sine(hertz, amplitude), kRate, kPoints);
            ASSERT_EQ(levels.size(), kPoints);
            const auto loudest = std::ranges::max_element(levels);
            EXPECT_NEAR(*loudest, 20.0 * std::log10(amplitude), 0.01);
            const auto point = static_cast<std::size_t>(loudest - levels.begin());
            // The loudest of what falls between two points counts; the window spreads it by a bin of 11.7 Hz.
            EXPECT_LE(SpectrumFrequency(point, kPoints, kRate), hertz + 12.0);
            EXPECT_GE(SpectrumFrequency(point + 1, kPoints, kRate), hertz - 12.0);
            EXPECT_LT(levels.front(), -90.0); // at 20 Hz, far away
        }
    EXPECT_NEAR(SpectrumFrequency(0, kPoints, kRate), 20.0, 1e-9);
    EXPECT_NEAR(SpectrumFrequency(kPoints - 1, kPoints, kRate), 24000.0, 1e-6);
}

TEST(Spectrum, SilenceShortSignalsAndWhatIsNoNumberHaveALevelToo)
{
    const std::vector<float> silence(64);
    EXPECT_EQ(SpectrumOf(silence, kRate, 3), std::vector<double>(3, -140.0));
    EXPECT_TRUE(SpectrumOf(std::span(silence).first(63), kRate, 3).empty());
    EXPECT_EQ(SpectrumOf(std::vector<float>(64, std::numeric_limits<float>::quiet_NaN()), kRate, 3),
              std::vector<double>(3, -140.0));
}

TEST(Chart, DrawsWithinItsAxesAndEscapesWhatAPluginIsCalled)
{
    CHtmlChart chart("Level of <Bass & \"Drum\">\xFF");
    chart.SetVerticalTicks({{1.0, "0 dB"}});
    const std::vector<CHtmlChart::SPoint> points{{0.0, 0.0}, {0.5, 1.0}, {7.0, -3.0}};
    chart.AddLine(points, "a dots");
    const std::string svg = chart.Svg();
    EXPECT_NE(svg.find("aria-label=\"Level of &lt;Bass &amp; &quot;Drum&quot;&gt;\""), std::string::npos);
    // 480 by 220, with 60 and 14 beside the axes, 10 above and 26 below: what is outside lies on the edge.
    EXPECT_NE(svg.find("<polyline class=\"line a dots\" points=\"60.0,194.0 263.0,10.0 466.0,194.0 \"/>"),
              std::string::npos)
        << svg;
    EXPECT_NE(svg.find("y1=\"10.0\" y2=\"10.0\"/><text class=\"tick end\" x=\"54\" y=\"14.0\">0 dB</text>"),
              std::string::npos)
        << svg;
}
} // namespace
