#include "Tools/aaxhost/report/sections/Sections.h"

#include "Tools/aaxhost/report/Spectrum.h"
#include "Tools/aaxhost/report/sections/Ticks.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace
{
std::string Waveform(const SReportSignal& inSignal)
{
    double peak = 1e-6;
    for (std::size_t i = 0; i < inSignal.mLowest.size(); ++i)
        peak = std::max({peak, -inSignal.mLowest[i], inSignal.mHighest[i]});
    Points lower;
    Points upper;
    for (std::size_t i = 0; i < inSignal.mLowest.size(); ++i)
    {
        const double x = (static_cast<double>(i) + 0.5) / static_cast<double>(inSignal.mLowest.size());
        lower.push_back({x, 0.5 + 0.48 * inSignal.mLowest[i] / peak});
        upper.push_back({x, 0.5 + 0.48 * inSignal.mHighest[i] / peak});
    }
    CHtmlChart chart("Waveform: " + inSignal.mTitle);
    chart.SetHorizontalTicks(SecondTicks(inSignal.mSeconds));
    chart.SetVerticalTicks(
        {{0.02, fmt::format("{:.2g}", -peak)}, {0.5, "0"}, {0.98, fmt::format("{:.2g}", peak)}});
    chart.AddBand(lower, upper, "a");
    return Figure(Escaped(inSignal.mTitle) + ": waveform", chart.Svg());
}

std::string SpectrumFigure(const SReportSignal& inSignal, double inRate)
{
    if (inSignal.mSpectrum.empty())
        return {};
    constexpr double floor = -120.0; // dB at the bottom of the picture
    const std::size_t count = inSignal.mSpectrum.size();
    Points line;
    for (std::size_t i = 0; i < count; ++i)
        line.push_back({static_cast<double>(i) / static_cast<double>(count - 1),
                        (inSignal.mSpectrum[i] - floor) / -floor});
    const double lowest = SpectrumFrequency(0, count, inRate);
    std::vector<STick> hertz;
    for (const auto& [frequency, text] :
         {std::pair<double, const char*>{100.0, "100 Hz"}, {1000.0, "1 kHz"}, {10000.0, "10 kHz"}})
        hertz.push_back({std::log(frequency / lowest) / std::log(0.5 * inRate / lowest), text});
    CHtmlChart chart("Spectrum: " + inSignal.mTitle);
    chart.SetHorizontalTicks(hertz);
    chart.SetVerticalTicks({{0.0, "-120 dB"}, {1.0 / 3.0, "-80"}, {2.0 / 3.0, "-40"}, {1.0, "0"}});
    chart.AddLine(line, "a");
    return Figure(Escaped(inSignal.mTitle) + ": spectrum", chart.Svg());
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
        html += "<div class=\"pair\">\n" + Waveform(signal) + SpectrumFigure(signal, inSignals.mRate) +
                "</div>\n";
    return html;
}
