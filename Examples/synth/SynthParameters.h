#pragma once
#include "Examples/common/CProgramBank.h"
#include "Examples/common/SParameterInfo.h"

#include <cstddef>
#include <span>

/** The synthesizer's parameters in the order that hosts see. */
enum ESynthParameter : std::size_t
{
    kCutoff,
    kEmphasis,
    kContour,
    kShape,
    kDetune,
    kSubLevel,
    kAttack,
    kDecay,
    kSustain,
    kRelease,
    kVibrato,
    kBendRange,
    kVolume,
    kSynthParameterCount
};

std::span<const SParameterInfo> SynthParameters() noexcept;
std::span<const SFactoryProgram> SynthPrograms() noexcept;
