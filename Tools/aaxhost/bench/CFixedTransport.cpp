#include "Tools/aaxhost/bench/CFixedTransport.h"

namespace
{
constexpr std::int64_t kTicksPerQuarter = 960000;
constexpr std::int64_t kTicksPerSample = 40; // at 48,000 Hz
} // namespace

AAX_Result CFixedTransport::GetCurrentTempo(double* outTempo) const
{
    *outTempo = 120.0;
    return kAAX_Success;
}

AAX_Result CFixedTransport::IsTransportPlaying(bool* outPlaying) const
{
    *outPlaying = true;
    return kAAX_Success;
}

AAX_Result CFixedTransport::GetCurrentNativeSampleLocation(std::int64_t* outSamples) const
{
    *outSamples = mLocation;
    mLocation += 64;
    return kAAX_Success;
}

AAX_Result CFixedTransport::GetCurrentMeter(std::int32_t* outNumerator, std::int32_t* outDenominator) const
{
    *outNumerator = 4;
    *outDenominator = 4;
    return kAAX_Success;
}

AAX_Result CFixedTransport::GetCurrentTickPosition(std::int64_t* outTicks) const
{
    return GetCustomTickPosition(outTicks, mLocation);
}

AAX_Result CFixedTransport::GetCurrentLoopPosition(bool* outIsLooping, std::int64_t* outStart,
                                                   std::int64_t* outEnd) const
{
    *outIsLooping = true;
    *outStart = 0;
    *outEnd = 4 * kTicksPerQuarter;
    return kAAX_Success;
}

AAX_Result CFixedTransport::GetCustomTickPosition(std::int64_t* outTicks, std::int64_t inLocation) const
{
    *outTicks = inLocation * kTicksPerSample;
    return kAAX_Success;
}

AAX_Result CFixedTransport::GetBarBeatPosition(std::int32_t* outBars, std::int32_t* outBeats,
                                               std::int64_t* outTicks, std::int64_t inLocation) const
{
    const std::int64_t ticks = inLocation * kTicksPerSample;
    *outBars = static_cast<std::int32_t>(ticks / (4 * kTicksPerQuarter) + 1);
    *outBeats = static_cast<std::int32_t>(ticks / kTicksPerQuarter % 4 + 1);
    *outTicks = ticks % kTicksPerQuarter;
    return kAAX_Success;
}

AAX_Result CFixedTransport::GetTicksPerQuarter(std::uint32_t* outTicks) const
{
    *outTicks = kTicksPerQuarter;
    return kAAX_Success;
}

AAX_Result CFixedTransport::GetCurrentTicksPerBeat(std::uint32_t* outTicks) const
{
    *outTicks = kTicksPerQuarter;
    return kAAX_Success;
}

AAX_Result CFixedTransport::GetTimelineSelectionStartPosition(std::int64_t*) const
{
    return kAAX_ErrorUnsupported;
}
AAX_Result CFixedTransport::GetTimeCodeInfo(std::int32_t*, std::int32_t*) const
{
    return kAAX_ErrorUnsupported;
}
AAX_Result CFixedTransport::GetFeetFramesInfo(std::int32_t*, std::int64_t*) const
{
    return kAAX_ErrorUnsupported;
}
