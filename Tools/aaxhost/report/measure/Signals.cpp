#include "Tools/aaxhost/report/Spectrum.h"
#include "Tools/aaxhost/report/measure/Level.h"
#include "Tools/aaxhost/report/measure/Parts.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr std::size_t kColumns = 240; // of a waveform
constexpr std::size_t kSpectrumPoints = 160;
constexpr std::size_t kImpulseSamples = 240;
constexpr std::size_t kSpectrogramColumns = 160;
constexpr std::size_t kSpectrogramRows = 96;

SReportSignal Signal(const std::string& inTitle, const std::vector<float>& inSamples, double inRate)
{
    SReportSignal signal;
    signal.mTitle = inTitle;
    signal.mSeconds = static_cast<double>(inSamples.size()) / inRate;
    for (std::size_t column = 0; column < kColumns; ++column)
    {
        const auto begin =
            inSamples.begin() + static_cast<std::ptrdiff_t>(column * inSamples.size() / kColumns);
        const auto end =
            inSamples.begin() + static_cast<std::ptrdiff_t>((column + 1) * inSamples.size() / kColumns);
        double lowest = 0.0;
        double highest = 0.0;
        for (auto sample = begin; sample != end; ++sample)
            if (std::isfinite(*sample))
            {
                lowest = std::min(lowest, static_cast<double>(*sample));
                highest = std::max(highest, static_cast<double>(*sample));
            }
        signal.mLowest.push_back(lowest);
        signal.mHighest.push_back(highest);
    }
    // From the loud part on: the beginning may be silent.
    signal.mSpectrum =
        SpectrumOf(std::span(inSamples).subspan(inSamples.size() / 8), inRate, kSpectrumPoints);
    signal.mLevel = LevelOf(inSamples);
    signal.mSpectrogram = SpectrogramOf(inSamples, inRate, kSpectrogramColumns, kSpectrogramRows);
    for (double& level : signal.mSpectrogram)
        level = std::round(level); // finer than a colour shows
    signal.mColumns = kSpectrogramColumns;
    signal.mRows = kSpectrogramRows;
    return signal;
}

/** The spectrum of the answer to an impulse, 0 dB where as much comes out as went in. */
std::vector<double> ResponseSpectrum(const std::vector<float>& inResponse, float inImpulse, double inRate)
{
    // In the middle of the window, and against the level that a window-long sine would have.
    constexpr std::size_t half = 16384;
    constexpr float sine = half / 2.0F;
    std::vector<float> samples(2 * half, 0.0F);
    for (std::size_t i = 0; i < std::min(half, inResponse.size()); ++i)
        samples[half + i] = inResponse[i] * sine / inImpulse;
    return SpectrumOf(samples, inRate, kSpectrumPoints);
}
} // namespace

SReportSignals MeasureSignals(const std::string& inModule)
{
    CCheckContext context(inModule, kMeasureStrictness);
    SReportSignals signals;
    signals.mRate = kCheckRate;
    const auto render = [&](const std::string& title, const SignalSource& source, bool note)
    {
        CRig rig(context);
        rig.RenderSeconds(0.1);
        rig.Record();
        rig.Feed([&, start = rig.Position()](std::int64_t frame, std::size_t channel)
                 { return source(frame - start, channel); });
        if (note)
            rig.Send(0, 0x90, 60, 100);
        rig.RenderSeconds(1.0);
        rig.Send(0, 0x80, 60, 64);
        rig.Feed(Silence());
        rig.RenderSeconds(0.5);
        constexpr float silent = 1e-6F;
        if (rig.TakePeak() > silent)
            signals.mSignals.push_back(Signal(title, FirstOutput(rig), kCheckRate));
        return FirstOutput(rig);
    };
    if (!context.IsInstrument() && context.MakeInstance()->InputChannels() > 0)
    {
        (void)render("Sine of 1 kHz at -6 dB for one second", Sine(1000.0, 0.5F, kCheckRate), false);
        (void)render("White noise at -12 dB for one second", Noise(0.25F), false);
        const std::string title = "Impulse at -6 dB";
        const auto impulse = render(title, Impulse(0, 0.5F), false);
        if (!signals.mSignals.empty() && signals.mSignals.back().mTitle == title)
        {
            signals.mSignals.back().mSpectrum = ResponseSpectrum(impulse, 0.5F, kCheckRate);
            signals.mSignals.back().mIsImpulse = true;
        }
        for (std::size_t i = 0; i < std::min(kImpulseSamples, impulse.size()); ++i)
            signals.mImpulse.push_back(std::isfinite(impulse[i]) ? static_cast<double>(impulse[i]) : 0.0);
    }
    if (context.TakesMidi())
        (void)render("Note C4 held for one second", Silence(), true);
    return signals;
}
