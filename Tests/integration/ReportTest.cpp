#include "Tests/doubles/faulty/FaultyPlugin.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tests/support/FileContents.h"
#include "Tests/support/ToolRun.h"
#include "Tools/aaxhost/report/Spectrum.h"
#include "Tools/aaxhost/report/measure/Parts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <span>
#include <string>

namespace
{
namespace fs = std::filesystem;

TEST(ReportFacts, CheckSaysTheSameOfAPluginAsTheInspector)
{
    // The last two load only with an answer inside their entry, or not at all.
    for (const fs::path& plugin : {kDelayPlugin, kSynthPlugin, fs::path(Faulty("TwoPrograms")),
                                   fs::path(Faulty("Demanding")), fs::path(Faulty("CrashInOpen"))})
    {
        SCOPED_TRACE(plugin);
        const CModuleBundle bundle(kOptionsModule, plugin);
        const std::string file = bundle.Path().parent_path() / "result.json";
        const SToolRun run = RunTool(
            {AAXHOST, "check", bundle.Path().string(), "--only", "description.opens", "--json", file});
        auto told = nlohmann::json::parse(Contents(file)).at("plugin");
        const SToolRun probe = RunTool({VST2PROBE_FILE, bundle.SourceVst().string(), "--json"});
        auto probed = nlohmann::json::parse(probe.mOutput);
        if (probed.contains("error"))
        {
            EXPECT_NE(probed["error"].get<std::string>().find(told.at("refused")), std::string::npos)
                << told << probed;
            continue;
        }
        for (const char* ofTheProduct : {"productName", "cmakeCall", "configureArguments"})
            EXPECT_EQ(probed.erase(ofTheProduct), 1U) << ofTheProduct;
        EXPECT_EQ(told, probed);
        EXPECT_FALSE(told.at("name").get<std::string>().empty());
    }
}

TEST(ReportFacts, OfAModuleThatDoesNotOpenSayThat)
{
    const CModuleBundle bundle(kPlainModule, {});
    const std::string file = bundle.Path().parent_path() / "result.json";
    (void)RunTool({AAXHOST, "check", bundle.Path().string(), "--only", "description.opens", "--json", file});
    EXPECT_EQ(nlohmann::json::parse(Contents(file)).at("plugin").at("refused"),
              "the module that it is in does not open");
}

// A stereo gain of 0.8 at the start, with a balance of 0.5: the first output is the input times 0.4.
const fs::path kGainPlugin = Faulty("None");

constexpr double kAsLongAsItTakes = 1e6; // seconds: a busy machine measures the same

TEST(ReportMeasures, TheSweepOfAGainIsItsCurve)
{
    const CModuleBundle bundle(kPlainModule, kGainPlugin);
    const SReportSweep sweep = MeasureSweep(bundle.Path(), kAsLongAsItTakes);
    ASSERT_EQ(sweep.mParameters.size(), 2U);
    EXPECT_EQ(sweep.mAutomatable, 2);
    EXPECT_FALSE(sweep.mIsPlayed);
    EXPECT_LT(sweep.mSpread, 0.01);
    // White noise between -0.25 and 0.25 has a level of 0.25 over the root of 3.
    const double noise = 20.0 * std::log10(0.25 / std::sqrt(3.0));
    const auto expect = [&](const SReportSweptParameter& parameter, auto amplitude)
    {
        SCOPED_TRACE(parameter.mName);
        EXPECT_TRUE(parameter.mIsAudible);
        ASSERT_EQ(parameter.mLevels.size(), sweep.mValues.size());
        for (std::size_t i = 0; i < sweep.mValues.size(); ++i)
        {
            const double level = noise + 20.0 * std::log10(std::max(amplitude(sweep.mValues[i]), 1e-9));
            EXPECT_NEAR(parameter.mLevels[i], std::max(level, -120.0), 0.2) << sweep.mValues[i];
        }
        // Against each other they are exact, since all have the same noise.
        EXPECT_NEAR(parameter.mLevels[6] - parameter.mLevels[4],
                    20.0 * std::log10(amplitude(0.75) / amplitude(0.5)), 0.01);
    };
    EXPECT_EQ(sweep.mParameters[0].mName, "Gain");
    expect(
        sweep.mParameters[0], [](double value) { return 0.5 * value; });
    expect(sweep.mParameters[1], [](double value) { return 0.8 * (1.0 - value); });
}

TEST(ReportMeasures, ASweepIsPlayedOnAnInstrumentAndTellsWhatIsInaudible)
{
    const CModuleBundle synth(kPlainModule, kSynthPlugin);
    const SReportSweep played = MeasureSweep(synth.Path(), kAsLongAsItTakes);
    EXPECT_TRUE(played.mIsPlayed);
    EXPECT_GT(std::ranges::count(played.mParameters, true, &SReportSweptParameter::mIsAudible), 0);
    const CModuleBundle delay(kPlainModule, kDelayPlugin);
    const SReportSweep sweep = MeasureSweep(delay.Path(), kAsLongAsItTakes);
    for (const SReportSweptParameter& parameter : sweep.mParameters)
        EXPECT_EQ(parameter.mIsAudible, parameter.mName == "Mix" || parameter.mName == "Feedback")
            << parameter.mName;
}

TEST(ReportMeasures, LatencyAtEveryRateAndBlockSize)
{
    struct SRow
    {
        fs::path mPlugin;
        int mReported;
        int mMeasured;
    };
    for (const SRow& row : {SRow{kDelayPlugin, 64, 64}, SRow{Faulty("Latency"), 64, 0},
                            SRow{kGainPlugin, 0, 0}, SRow{kSynthPlugin, 0, -1}})
    {
        SCOPED_TRACE(row.mPlugin);
        const CModuleBundle bundle(kPlainModule, row.mPlugin);
        const SReportLatency latency = MeasureLatency(bundle.Path(), kAsLongAsItTakes);
        EXPECT_EQ(latency.mCut, "");
        EXPECT_EQ(latency.mPoints.size(), 18U);
        for (const SReportLatencyPoint& point : latency.mPoints)
        {
            EXPECT_EQ(point.mReported, row.mReported) << point.mRate << " Hz, " << point.mBlock;
            EXPECT_EQ(point.mMeasured, row.mMeasured) << point.mRate << " Hz, " << point.mBlock;
        }
    }
}

TEST(ReportMeasures, ASineThroughAGainIsOneLineOfItsLevel)
{
    const CModuleBundle bundle(kPlainModule, kGainPlugin);
    const SReportSignals signals = MeasureSignals(bundle.Path());
    ASSERT_EQ(signals.mSignals.size(), 3U); // sine, noise, impulse
    const SReportSignal& sine = signals.mSignals[0];
    const auto loudest = std::ranges::max_element(sine.mSpectrum);
    EXPECT_NEAR(*loudest, 20.0 * std::log10(0.5 * 0.4), 1.5); // between two bins it is less
    const auto point = static_cast<std::size_t>(loudest - sine.mSpectrum.begin());
    EXPECT_NEAR(std::log2(SpectrumFrequency(point, sine.mSpectrum.size(), signals.mRate) / 1000.0), 0.0, 0.1);
    const auto rows = static_cast<std::size_t>(sine.mRows);
    ASSERT_EQ(sine.mSpectrogram.size(), rows * static_cast<std::size_t>(sine.mColumns));
    const auto brightest = [&](std::size_t column)
    { return std::ranges::max(std::span(sine.mSpectrogram).subspan(column * rows, rows)); };
    EXPECT_NEAR(brightest(static_cast<std::size_t>(sine.mColumns) / 4), 20.0 * std::log10(0.5 * 0.4), 2.0);
    EXPECT_LT(brightest(static_cast<std::size_t>(sine.mColumns) - 1), -100.0); // after its second
    const SReportSignal& impulse = signals.mSignals[2];
    EXPECT_TRUE(impulse.mIsImpulse);
    for (const double level : impulse.mSpectrum)
        EXPECT_NEAR(level, 20.0 * std::log10(0.4), 0.01); // of a gain it is flat
}

TEST(ReportMeasures, TextsAreThePluginsOwn)
{
    const CModuleBundle bundle(kPlainModule, kDelayPlugin);
    const SReportParameterTexts texts = ReadTexts(bundle.Path());
    ASSERT_EQ(texts.mParameters.size(), 4U);
    const SReportTexts& time = texts.mParameters[0];
    EXPECT_EQ(time.mName, "Time");
    EXPECT_EQ(time.mUnit, "ms");
    EXPECT_EQ(std::stod(time.mDefault), 350.0);
    EXPECT_EQ(std::stod(time.mAtZero), 1.0);
    EXPECT_NEAR(std::stod(time.mAtHalf), 500.0, 1.0);
    EXPECT_EQ(std::stod(time.mAtOne), 1000.0);
}
} // namespace
