#include "Tools/aaxhost/report/Spectrum.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <complex>
#include <numbers>

namespace
{
constexpr double kLowestHertz = 20.0;
constexpr double kFloor = -140.0; // dB

using Complex = std::complex<double>;

/** In place; the length must be a power of two. */
void Transform(std::vector<Complex>& ioValues)
{
    const std::size_t count = ioValues.size();
    for (std::size_t i = 1, j = 0; i < count; ++i)
    {
        std::size_t bit = count >> 1;
        for (; (j & bit) != 0; bit >>= 1)
            j ^= bit;
        j ^= bit;
        if (i < j)
            std::swap(ioValues[i], ioValues[j]);
    }
    for (std::size_t length = 2; length <= count; length *= 2)
    {
        const Complex step = std::polar(1.0, -2.0 * std::numbers::pi / static_cast<double>(length));
        for (std::size_t begin = 0; begin < count; begin += length)
        {
            Complex factor = 1.0;
            for (std::size_t i = begin; i < begin + length / 2; ++i, factor *= step)
            {
                const Complex odd = ioValues[i + length / 2] * factor;
                ioValues[i + length / 2] = ioValues[i] - odd;
                ioValues[i] += odd;
            }
        }
    }
}
} // namespace

double SpectrumFrequency(std::size_t inPoint, std::size_t inPoints, double inRate)
{
    const double part = static_cast<double>(inPoint) / static_cast<double>(inPoints - 1);
    return kLowestHertz * std::pow(0.5 * inRate / kLowestHertz, part);
}

std::vector<double> SpectrumOf(std::span<const float> inSignal, double inRate, std::size_t inPoints)
{
    const std::size_t count = std::bit_floor(inSignal.size());
    if (count < 64)
        return {};
    std::vector<Complex> bins(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        const double window = 0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * static_cast<double>(i) /
                                                   static_cast<double>(count));
        const double sample = static_cast<double>(inSignal[i]);
        bins[i] = std::isfinite(sample) ? sample * window : 0.0;
    }
    Transform(bins);
    // A sine of amplitude 1 gives half the count times the window's mean of one half.
    const double fullScale = static_cast<double>(count) / 4.0;
    std::vector<double> levels;
    for (std::size_t point = 0; point < inPoints; ++point)
    {
        const auto bin = [&](double hertz)
        {
            const double index = hertz * static_cast<double>(count) / inRate;
            return std::min(static_cast<std::size_t>(std::lround(index)), count / 2);
        };
        const std::size_t first = bin(SpectrumFrequency(point, inPoints, inRate));
        const std::size_t last = std::max(
            first, point + 1 < inPoints ? bin(SpectrumFrequency(point + 1, inPoints, inRate)) : first);
        double magnitude = 0.0;
        for (std::size_t i = first; i <= last; ++i)
            magnitude = std::max(magnitude, std::abs(bins[i]));
        levels.push_back(std::max(kFloor, 20.0 * std::log10(std::max(magnitude / fullScale, 1e-12))));
    }
    return levels;
}

std::vector<double> SpectrogramOf(std::span<const float> inSignal, double inRate, std::size_t inColumns,
                                  std::size_t inPoints)
{
    constexpr std::size_t window = 2048;
    std::vector<double> levels;
    std::vector<float> padded(inSignal.size() + window, 0.0F);
    std::ranges::copy(inSignal, padded.begin() + window / 2);
    for (std::size_t column = 0; column < inColumns; ++column)
    {
        const std::size_t middle = (2 * column + 1) * inSignal.size() / (2 * inColumns);
        const auto spectrum = SpectrumOf(std::span(padded).subspan(middle, window), inRate, inPoints);
        levels.insert(levels.end(), spectrum.begin(), spectrum.end());
    }
    return levels;
}
