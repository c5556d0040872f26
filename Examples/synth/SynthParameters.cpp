#include "Examples/synth/SynthParameters.h"

#include <array>

namespace
{
using Values = std::array<double, kSynthParameterCount>;

constexpr std::array<SParameterInfo, kSynthParameterCount> kParameters{{
    {"Cutoff", "Hz", 40.0, 16000.0, 0, EParameterScale::kExponential},
    {"Emphasis", "%", 0.0, 100.0, 0},
    {"Contour", "oct", 0.0, 5.0, 2},
    {"Shape", "%", 0.0, 100.0, 0}, // from saw to square
    {"Detune", "cent", 0.0, 50.0, 1},
    {"SubLevel", "%", 0.0, 100.0, 0},
    {"Attack", "ms", 1.0, 2000.0, 0, EParameterScale::kExponential},
    {"Decay", "ms", 10.0, 5000.0, 0, EParameterScale::kExponential},
    {"Sustain", "%", 0.0, 100.0, 0},
    {"Release", "ms", 10.0, 5000.0, 0, EParameterScale::kExponential},
    {"Vibrato", "cent", 0.0, 100.0, 0}, // with the modulation wheel at its end
    {"Bend", "semi", 0.0, 12.0, 1},
    {"Volume", "dB", -60.0, 6.0, 1},
}};

// Cutoff, emphasis, contour, shape, detune, sub, attack, decay, sustain, release, vibrato, bend, volume.
constexpr Values kSoftKeys = {900.0, 15.0, 1.5, 25.0, 6.0, 30.0, 4.0, 900.0, 45.0, 250.0, 20.0, 2.0, -2.0};
constexpr Values kBrightLead = {2400.0, 35.0, 2.0,   60.0, 12.0, 15.0, 2.0,
                                400.0,  80.0, 150.0, 40.0, 2.0,  -3.0};
constexpr Values kWarmPad = {600.0,  10.0, 1.0,    10.0, 18.0, 20.0, 450.0,
                             1500.0, 75.0, 1200.0, 15.0, 2.0,  -4.0};
constexpr Values kDeepBass = {220.0, 30.0, 2.5, 40.0, 4.0, 70.0, 2.0, 350.0, 35.0, 120.0, 10.0, 2.0, -4.0};

constexpr std::array<SFactoryProgram, 4> kPrograms{{
    {"Soft Keys", kSoftKeys},
    {"Bright Lead", kBrightLead},
    {"Warm Pad", kWarmPad},
    {"Deep Bass", kDeepBass},
}};
} // namespace

std::span<const SParameterInfo> SynthParameters() noexcept { return kParameters; }

std::span<const SFactoryProgram> SynthPrograms() noexcept { return kPrograms; }
