#pragma once
#include <span>
#include <vector>

/**
 * The level over frequency of a signal, through a Hann window over its first power-of-two number of samples.
 *
 * @return decibels, 0 for a sine at full scale, at inPoints frequencies from 20 Hz to half the rate in equal
 * ratios; the loudest of what falls between two points. -140 at the least; empty for fewer than 64 samples.
 */
std::vector<double> SpectrumOf(std::span<const float> inSignal, double inRate, std::size_t inPoints);
/**
 * The spectrum over time: inColumns spectra of inPoints levels each, a column after the other, each of the
 * samples around its moment; beyond the ends there is silence.
 */
std::vector<double> SpectrogramOf(std::span<const float> inSignal, double inRate, std::size_t inColumns,
                                  std::size_t inPoints);
/** The frequency of a point of it, in Hz. */
double SpectrumFrequency(std::size_t inPoint, std::size_t inPoints, double inRate);
