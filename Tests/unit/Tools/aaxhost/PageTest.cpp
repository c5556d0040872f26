#include "Tools/aaxhost/check/ImpulseArrival.h"
#include "Tools/aaxhost/report/ColourScale.h"
#include "Tools/aaxhost/report/HtmlChart.h"
#include "Tools/aaxhost/report/ReportStyle.h"
#include "Tools/aaxhost/report/Spectrum.h"
#include "Tools/aaxhost/report/sections/Sections.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <map>
#include <numbers>
#include <regex>
#include <tuple>

namespace
{
constexpr double kRate = 48000.0; // Hz
constexpr std::size_t kPoints = 200;

/** A sine, for one spectrum unless a length is named: of these samples it uses 4,096. */
std::vector<float> Sine(double inHertz, double inAmplitude, std::size_t inSamples = 4100)
{
    std::vector<float> signal(inSamples);
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

TEST(Spectrum, OverTimeHasEachSoundAtItsMomentAndFrequency)
{
    std::vector<float> signal = Sine(250.0, 0.5, 24000);
    std::ranges::copy(Sine(4000.0, 0.05, 24000), std::back_inserter(signal));
    constexpr std::size_t columns = 100;
    constexpr std::size_t rows = 64;
    const std::vector<double> levels = SpectrogramOf(signal, kRate, columns, rows);
    ASSERT_EQ(levels.size(), columns * rows);
    for (std::size_t column = 0; column < columns; ++column)
    {
        SCOPED_TRACE(column);
        if (column == 50 || column == 51)
            continue; // the end of the louder sound is still in their windows
        const auto begin = levels.begin() + static_cast<std::ptrdiff_t>(column * rows);
        const auto loudest = std::max_element(begin, begin + rows);
        const bool isFirst = column < columns / 2;
        const double hertz = SpectrumFrequency(static_cast<std::size_t>(loudest - begin), rows, kRate);
        EXPECT_NEAR(std::log2(hertz / (isFirst ? 250.0 : 4000.0)), 0.0, 0.25) << hertz;
        const bool isAlone = column % 50 > 2 && column % 50 < 47; // in its window
        EXPECT_NEAR(*loudest, 20.0 * std::log10(isFirst ? 0.5 : 0.05), isAlone ? 1.5 : 5.0);
    }
}

TEST(ImpulseArrival, IsTheBeginningOfAResponseOrItsPeakWhereThatWasReported)
{
    const auto reverberant = FindImpulse(std::vector<double>{0.0, 0.0, 0.1, 0.05, -0.8, 0.2});
    ASSERT_TRUE(reverberant);
    EXPECT_EQ(reverberant->Nearest(0), 2);
    EXPECT_EQ(reverberant->Nearest(2), 2);
    EXPECT_EQ(reverberant->Nearest(4), 4); // a filter that rings ahead
    const auto broken = FindImpulse(std::vector<double>{std::numeric_limits<double>::quiet_NaN(), 1e-6, 0.5});
    ASSERT_TRUE(broken);
    EXPECT_EQ(broken->mBegin, 2);
    EXPECT_FALSE(FindImpulse(std::vector<double>(64, 1e-6)));
    EXPECT_FALSE(FindImpulse({}));
}

TEST(ColourScale, EverLighterSoThatItReadsWithoutHues)
{
    double before = -1.0;
    for (int i = 0; i <= 32; ++i)
    {
        const SColour colour = ScaleColour(i / 32.0);
        const double light = 0.2126 * colour.mRed + 0.7152 * colour.mGreen + 0.0722 * colour.mBlue;
        EXPECT_GT(light, before) << i;
        before = light;
    }
    EXPECT_EQ(ScaleColour(-3.0).mBlue, ScaleColour(0.0).mBlue);
    EXPECT_EQ(ScaleColour(9.0).mGreen, 255);
}

/** Relative luminance of "#rrggbb", as the guidelines on contrast define it. */
double LuminanceOf(const std::string& inColour)
{
    double luminance = 0.0;
    const double weights[] = {0.2126, 0.7152, 0.0722};
    for (std::size_t i = 0; i < 3; ++i)
    {
        const double part = std::stoi(inColour.substr(1 + 2 * i, 2), nullptr, 16) / 255.0;
        luminance += weights[i] * (part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4));
    }
    return luminance;
}

double Contrast(const std::string& inOne, const std::string& inOther)
{
    const auto [dark, light] = std::minmax({LuminanceOf(inOne), LuminanceOf(inOther)});
    return (light + 0.05) / (dark + 0.05);
}

TEST(ReportStyle, EveryTextStandsOutFromWhatIsBehindIt)
{
    const std::string style = kReportStyle;
    const std::regex variable(R"(--([a-z-]+): (#[0-9a-f]{3,6}))");
    std::vector<std::string> blocks;
    for (std::size_t root = style.find(":root {"); root != std::string::npos;
         root = style.find(":root {", root + 1))
        blocks.push_back(style.substr(root, style.find('}', root) - root));
    ASSERT_EQ(blocks.size(), 3U) << "light, dark and print";
    for (const std::string& block : blocks)
    {
        std::map<std::string, std::string> colours;
        for (std::sregex_iterator match(block.begin(), block.end(), variable), end; match != end; ++match)
        {
            std::string colour = (*match)[2];
            if (colour.size() == 4) // "#abc"
                colour = {'#', colour[1], colour[1], colour[2], colour[2], colour[3], colour[3]};
            colours[(*match)[1]] = colour;
        }
        for (const char* text : {"ink", "soft", "a"})
            for (const char* behind : {"page", "card"})
                EXPECT_GE(Contrast(colours.at(text), colours.at(behind)), 4.5)
                    << text << " on " << behind << " of " << block;
        for (const char* mark : {"good", "fair", "bad", "none"})
            EXPECT_GE(Contrast(colours.at(mark), colours.at(std::string(mark) + "-wash")), 4.5)
                << mark << " of " << block;
        for (const char* text : {"ink", "good"})
            EXPECT_GE(Contrast(colours.at(text), colours.at("good-wash")), 4.5) << text << " of " << block;
        EXPECT_GE(Contrast(colours.at("b"), colours.at("card")), 3.0) << "a line of " << block;
    }
}

TEST(HtmlText, AUnitFollowsATextThatHasNone)
{
    for (const auto& [text, unit, shown] : {std::tuple("350", "ms", "350 ms"),
                                            {"350 ms", "ms", "350 ms"},
                                            {"  -6.0 ", " dB ", "-6.0 dB"},
                                            {"Off", "", "Off"},
                                            {"", "dB", ""}})
        EXPECT_EQ(WithUnit(text, unit), shown);
}

TEST(Cost, IsDrawnAsAShareOfTheTimeThatABlockLasts)
{
    EXPECT_NEAR(ShareOfRealTime(1000.0, 48, 48000.0), 100.0, 1e-9);
    EXPECT_NEAR(ShareOfRealTime(10.0, 441, 44100.0), 0.1, 1e-9);
    SReportCost cost;
    cost.mBlocks = {48, 480}; // one and ten milliseconds
    cost.mModule = {10.0, 1000.0};
    cost.mBare = {10.0, 100.0};
    const std::string html = CostSection(cost);
    // From 1 to 10 per cent: the lower edge and the upper one.
    EXPECT_NE(html.find("line a dots\" points=\"60.0,206.0 458.0,26.0 \""), std::string::npos) << html;
    EXPECT_NE(html.find("line b dots\" points=\"60.0,206.0 458.0,206.0 \""), std::string::npos) << html;
    for (const char* part : {"share of real time at 48 kHz (%)", "block size (frames)", ">10.000<"})
        EXPECT_NE(html.find(part), std::string::npos) << part;
}

TEST(Sweep, DrawsWhatIsAudibleAndNamesTheRest)
{
    SReportSweep sweep;
    sweep.mValues = {0.0, 0.5, 1.0};
    sweep.mParameters = {{"00001", "Gain", {-72.0, -36.0, 0.0}, true},
                         {"00000", "Colour", {-6.0, -6.0, -6.0}, false}};
    sweep.mAutomatable = 300;
    sweep.mCut = "the time was up";
    SReportParameterTexts texts;
    texts.mParameters = {{}, {"Gain", "dB", "", "-inf", "-36", "0"}};
    const std::string html = SweepSection(sweep, texts);
    // 240 by 170, with 46 and 10 beside the axes, 24 above and 26 below, from -72 to 0 dB.
    EXPECT_NE(html.find("points=\"46.0,144.0 138.0,84.0 230.0,24.0 \""), std::string::npos) << html;
    for (const char* part :
         {">-inf dB</text>", ">0 dB</text>", "over: Colour.", "2 of 300 parameters were swept"})
        EXPECT_NE(html.find(part), std::string::npos) << part << " is not in\n" << html;
    EXPECT_EQ(html.find("<figcaption>Colour"), std::string::npos);
}

TEST(Sweep, OnlyAPluginsOwnParametersHaveTheTextsOfOne)
{
    SReportParameterTexts texts;
    texts.mParameters.resize(11);
    for (const auto& [id, index] : {std::pair("00000", 0), {"00010", 10}})
        EXPECT_EQ(texts.Find(id), &texts.mParameters[static_cast<std::size_t>(index)]) << id;
    for (const char* id : {"", "00011", "Gain", "3Gain", "MasterBypassID", "99999999999999999999999"})
        EXPECT_EQ(texts.Find(id), nullptr) << id;
}

TEST(Latency, IsSaidToAgreeOnlyWhereItDoes)
{
    SReportMaterial material;
    material.mLatency.mPoints = {{44100.0, 32, 64, 64}, {48000.0, 32, 64, 64}};
    EXPECT_NE(LatencySection(material).find("when the reported latency says"), std::string::npos);
    material.mLatency.mPoints[1].mMeasured = 96;
    const std::string html = LatencySection(material);
    EXPECT_NE(html.find("At 1 of the rates"), std::string::npos) << html;
    EXPECT_NE(html.find("96 (2.00 ms)"), std::string::npos) << html;
    // The measured line rises from two thirds of the highest to it, which stands a little below the edge.
    EXPECT_NE(html.find("line a dots\" points=\"60.0,101.7 458.0,49.5 \""), std::string::npos) << html;
    for (SReportLatencyPoint& point : material.mLatency.mPoints)
        point.mMeasured = -1;
    EXPECT_NE(LatencySection(material).find("No impulse comes out"), std::string::npos);
}

TEST(Limits, ThatTheProductsFeaturesLiftAreFolded)
{
    SProbeResult plugin;
    plugin.mFacts.emplace().mAsksTime = true;
    plugin.mFacts->mSendsMidi = true;
    const std::string without = LimitsSection(plugin, {});
    EXPECT_EQ(without.find("more cross"), std::string::npos);
    EXPECT_NE(without.find("feature <code>TIME</code>"), std::string::npos);
    const std::string with = LimitsSection(plugin, {"TIME"});
    const std::size_t fold = with.find("2 more cross by this product's features");
    ASSERT_NE(fold, std::string::npos) << with; // tempo, and meter
    EXPECT_GT(with.find("feature <code>TIME</code>"), fold);
    EXPECT_LT(with.find("feature <code>MIDI_OUTPUT</code>"), fold);
    plugin.mFacts.reset();
    plugin.mRefusal = "it threw an exception";
    EXPECT_NE(LimitsSection(plugin, {}).find("not known: it threw an exception."), std::string::npos);
}

TEST(Chart, DrawsWithinItsAxesAndEscapesWhatAPluginIsCalled)
{
    CHtmlChart chart("Level of <Bass & \"Drum\">\xFF");
    chart.SetVerticalTicks({{1.0, "0 dB"}});
    const std::vector<CHtmlChart::SPoint> points{{0.0, 0.0}, {0.5, 1.0}, {7.0, -3.0}};
    chart.AddLine(points, "a dots");
    const std::string svg = chart.Svg();
    EXPECT_NE(svg.find("aria-label=\"Level of &lt;Bass &amp; &quot;Drum&quot;&gt;\""), std::string::npos);
    // 480 by 250, with 60 and 22 beside the axes, 26 above and 44 below: what is outside lies on the edge.
    EXPECT_NE(svg.find("<polyline class=\"line a dots\" points=\"60.0,206.0 259.0,26.0 458.0,206.0 \"/>"),
              std::string::npos)
        << svg;
    EXPECT_NE(svg.find("y1=\"26.0\" y2=\"26.0\"/><text class=\"tick end\" x=\"54\" y=\"30.0\">0 dB</text>"),
              std::string::npos)
        << svg;
}
} // namespace
