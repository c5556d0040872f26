#pragma once
#include "Source/AAX_SInstrumentSetupInfo.h"

#include <array>
#include <cstdint>
#include <span>

struct SIOPortDef;

/**
 * How the wrapped plug-in's ports look to the host.
 *
 * The description and every instance derive it from the same ports, so that an instance knows how many
 * channels the host's arrays have.
 */
struct SStemLayout
{
    std::int32_t mInputStem = AAX_eStemFormat_None;
    std::int32_t mOutputStem = AAX_eStemFormat_None;
    std::int32_t mNumAuxStems = 0; // output ports beyond the first, at most kMaxAuxOutputStems
    std::array<std::int32_t, kMaxAuxOutputStems> mAuxStems{};

    /** Channels in the host's input array. */
    long InputChannelCount() const noexcept;
    /** Channels in the host's output array: the main stem's, then those of each auxiliary stem. */
    long OutputChannelCount() const noexcept;
};

/** Formats of the main stems of a component. */
struct SStemPair
{
    std::int32_t mInput = AAX_eStemFormat_None;
    std::int32_t mOutput = AAX_eStemFormat_None;
    bool operator==(const SStemPair&) const = default;
};

/** What makes a component of the description another than the first. */
struct SComponentChoice
{
    SStemPair mStems;
    std::uint32_t mPlugInID = 0;
};

/**
 * The first port of each direction gives the main stems. A direction without a usable first port takes the
 * other's format; with neither both are AAX_eStemFormat_None. Each further output port is an auxiliary stem.
 */
SStemLayout StemLayoutOfPorts(std::span<const SIOPortDef> inInputs, std::span<const SIOPortDef> inOutputs);
