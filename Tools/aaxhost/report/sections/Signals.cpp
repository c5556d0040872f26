#include "Tools/aaxhost/report/HtmlChart.h"
#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/Base64.h"
#include "Tools/aaxhost/report/ColourScale.h"
#include "Tools/aaxhost/report/HtmlTable.h"
#include "Tools/aaxhost/report/Spectrum.h"
#include "Tools/aaxhost/window/SPicture.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace
{
constexpr double kFloor = -120.0; // dB at the bottom of a spectrum, and the darkest colour

double Decibels(double inAmplitude) { return 20.0 * std::log10(std::max(std::abs(inAmplitude), 1e-7)); }

double PeakIn(const SReportSignal& inSignal, std::size_t inBegin, std::size_t inEnd)
{
    double peak = 0.0;
    for (std::size_t i = inBegin; i < std::min(inEnd, inSignal.mLowest.size()); ++i)
        peak = std::max({peak, -inSignal.mLowest[i], inSignal.mHighest[i]});
    return peak;
}

/** Twelve spans of the time with the peak in each. */
std::string WaveformNumbers(const SReportSignal& inSignal)
{
    constexpr std::size_t spans = 12;
    const std::size_t count = inSignal.mLowest.size();
    SHtmlTable table{{"from", "to", "peak", "peak"}, {}};
    for (std::size_t i = 0; i < spans; ++i)
    {
        const double peak = PeakIn(inSignal, i * count / spans, (i + 1) * count / spans);
        table.mRows.push_back(
            {fmt::format("{:.3f} s", inSignal.mSeconds * static_cast<double>(i) / spans),
             fmt::format("{:.3f} s", inSignal.mSeconds * static_cast<double>(i + 1) / spans),
             fmt::format("{:.4f}", peak), fmt::format("{:.1f} dBFS", Decibels(peak))});
    }
    return Figure(Escaped(inSignal.mTitle) + ": in numbers", table.Html());
}

std::string Summary(const SReportSignal& inSignal)
{
    const double peak = PeakIn(inSignal, 0, inSignal.mLowest.size());
    return fmt::format("{:.1f} s, peak {:.1f} dBFS, level {:.1f} dBFS", inSignal.mSeconds, Decibels(peak),
                       inSignal.mLevel);
}

std::string Waveform(const SReportSignal& inSignal)
{
    const double peak = std::max(PeakIn(inSignal, 0, inSignal.mLowest.size()), 1e-6);
    Points lower;
    Points upper;
    for (std::size_t i = 0; i < inSignal.mLowest.size(); ++i)
    {
        const double x = (static_cast<double>(i) + 0.5) / static_cast<double>(inSignal.mLowest.size());
        lower.push_back({x, 0.5 + 0.48 * inSignal.mLowest[i] / peak});
        upper.push_back({x, 0.5 + 0.48 * inSignal.mHighest[i] / peak});
    }
    CHtmlChart chart("Waveform: " + inSignal.mTitle);
    chart.SetAxes("time (s)", "amplitude (1 = full scale)");
    chart.SetSummary(Summary(inSignal));
    chart.SetHorizontalTicks(SecondTicks(inSignal.mSeconds));
    chart.SetVerticalTicks(
        {{0.02, fmt::format("{:.2g}", -peak)}, {0.5, "0"}, {0.98, fmt::format("{:.2g}", peak)}});
    chart.AddBand(lower, upper, "a");
    return Figure(Escaped(inSignal.mTitle) + ": waveform", chart.Svg());
}

/** On a scale on which one sample and its echoes can be seen. */
std::string ImpulseLevels(const SReportSignal& inSignal)
{
    constexpr double floor = -100.0; // dB
    Points bottom;
    Points levels;
    const std::size_t count = inSignal.mLowest.size();
    for (std::size_t i = 0; i < count; ++i)
    {
        const double x = (static_cast<double>(i) + 0.5) / static_cast<double>(count);
        bottom.push_back({x, 0.0});
        levels.push_back({x, (Decibels(PeakIn(inSignal, i, i + 1)) - floor) / -floor});
    }
    CHtmlChart chart("Level over time: " + inSignal.mTitle);
    chart.SetAxes("time (s)", "peak (dBFS)");
    chart.SetSummary(Summary(inSignal));
    chart.SetHorizontalTicks(SecondTicks(inSignal.mSeconds));
    chart.SetVerticalTicks(
        {{0.0, "-100"}, {0.2, "-80"}, {0.4, "-60"}, {0.6, "-40"}, {0.8, "-20"}, {1.0, "0"}});
    chart.AddBand(bottom, levels, "a");
    return Figure(Escaped(inSignal.mTitle) + ": level over time", chart.Svg());
}

/** The ticks of an axis from 20 Hz to half the rate in equal ratios. */
std::vector<STick> FrequencyTicks(std::size_t inPoints, double inRate)
{
    const double lowest = SpectrumFrequency(0, inPoints, inRate);
    std::vector<STick> ticks;
    for (const auto& [frequency, text] :
         {std::pair<double, const char*>{20.0, "20"}, {100.0, "100"}, {1000.0, "1,000"}, {10000.0, "10,000"}})
        ticks.push_back({std::log(frequency / lowest) / std::log(0.5 * inRate / lowest), text});
    return ticks;
}

/** The loudest within each third of a decade or so. */
std::string SpectrumNumbers(const SReportSignal& inSignal, double inRate)
{
    constexpr std::size_t spans = 12;
    const std::size_t count = inSignal.mSpectrum.size();
    SHtmlTable table{{"from", "to", "loudest"}, {}};
    for (std::size_t i = 0; i < spans; ++i)
    {
        const std::size_t begin = i * count / spans;
        const std::size_t end = (i + 1) * count / spans;
        const auto from = inSignal.mSpectrum.begin();
        table.mRows.push_back(
            {fmt::format("{:.0f} Hz", SpectrumFrequency(begin, count, inRate)),
             fmt::format("{:.0f} Hz", SpectrumFrequency(std::min(end, count - 1), count, inRate)),
             fmt::format("{:.1f} dB", *std::max_element(from + static_cast<std::ptrdiff_t>(begin),
                                                        from + static_cast<std::ptrdiff_t>(end)))});
    }
    return table.Folded();
}

std::string SpectrumFigure(const SReportSignal& inSignal, double inRate)
{
    const std::size_t count = inSignal.mSpectrum.size();
    if (count < 12)
        return {};
    Points line;
    for (std::size_t i = 0; i < count; ++i)
        line.push_back({static_cast<double>(i) / static_cast<double>(count - 1),
                        (inSignal.mSpectrum[i] - kFloor) / -kFloor});
    const auto loudest = std::ranges::max_element(inSignal.mSpectrum);
    CHtmlChart chart("Spectrum: " + inSignal.mTitle);
    chart.SetAxes("frequency (Hz)", inSignal.mIsImpulse ? "gain (dB)" : "level (dBFS)");
    chart.SetSummary(fmt::format(
        "Loudest with {:.1f} dB at about {:.0f} Hz", *loudest,
        SpectrumFrequency(static_cast<std::size_t>(loudest - inSignal.mSpectrum.begin()), count, inRate)));
    chart.SetHorizontalTicks(FrequencyTicks(count, inRate));
    chart.SetVerticalTicks({{0.0, "-120"}, {1.0 / 3.0, "-80"}, {2.0 / 3.0, "-40"}, {1.0, "0"}});
    chart.AddLine(line, "a");
    return Figure(Escaped(inSignal.mTitle) + ": spectrum", chart.Svg() + SpectrumNumbers(inSignal, inRate));
}

/** The levels as a picture, low frequencies at the bottom. */
SPicture Coloured(const SReportSignal& inSignal)
{
    SPicture picture{inSignal.mColumns, inSignal.mRows, {}};
    for (int row = inSignal.mRows - 1; row >= 0; --row)
        for (int column = 0; column < inSignal.mColumns; ++column)
        {
            const auto begin = inSignal.mSpectrogram.begin() + std::ptrdiff_t{column} * inSignal.mRows;
            const SColour colour = ScaleColour((begin[row] - kFloor) / -kFloor);
            picture.mPixels.insert(picture.mPixels.end(), {colour.mRed, colour.mGreen, colour.mBlue});
        }
    return picture;
}

std::string Spectrogram(const SReportSignal& inSignal, double inRate)
{
    const auto count = static_cast<std::size_t>(inSignal.mColumns) * static_cast<std::size_t>(inSignal.mRows);
    if (inSignal.mRows < 2 || inSignal.mSpectrogram.size() != count)
        return {};
    const auto png = EncodePng(Coloured(inSignal));
    if (!png)
        return Note("There is no spectrogram: " + png.Problem().mSentence);
    CHtmlChart chart("Spectrogram: " + inSignal.mTitle);
    chart.SetAxes("time (s)", "frequency (Hz)");
    chart.SetSummary("The table beside it has levels over time, that under the spectrum over frequency");
    chart.SetHorizontalTicks(SecondTicks(inSignal.mSeconds));
    chart.SetVerticalTicks(FrequencyTicks(static_cast<std::size_t>(inSignal.mRows), inRate));
    chart.SetPicture(Base64(*png));
    return Figure(Escaped(inSignal.mTitle) + ": spectrogram",
                  chart.Svg() + ColourLegend(kFloor, 0.0, 6, "dBFS"));
}
} // namespace

std::string SignalsSection(const SReportSignals& inSignals)
{
    if (!inSignals.mProblem.empty())
        return Note(inSignals.mProblem);
    if (inSignals.mSignals.empty())
        return Note("The plug-in takes neither audio nor MIDI, so there is nothing to render.");
    std::string html;
    for (const SReportSignal& signal : inSignals.mSignals)
        html += fmt::format("<h3>{}</h3>\n<p>{}.</p>\n<div class=\"pair\">\n", Escaped(signal.mTitle),
                            Summary(signal)) +
                (signal.mIsImpulse ? ImpulseLevels(signal) : Waveform(signal)) +
                SpectrumFigure(signal, inSignals.mRate) + Spectrogram(signal, inSignals.mRate) +
                WaveformNumbers(signal) + "</div>\n";
    return html;
}
