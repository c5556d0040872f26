#include "Tools/aaxhost/bench/CFixedTransport.h"

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

AAX_Result CFixedTransport::GetCurrentMeter(std::int32_t*, std::int32_t*) const
{
    return kAAX_ErrorUnsupported;
}
AAX_Result CFixedTransport::GetCurrentTickPosition(std::int64_t*) const { return kAAX_ErrorUnsupported; }
AAX_Result CFixedTransport::GetCurrentLoopPosition(bool*, std::int64_t*, std::int64_t*) const
{
    return kAAX_ErrorUnsupported;
}
AAX_Result CFixedTransport::GetCustomTickPosition(std::int64_t*, std::int64_t) const
{
    return kAAX_ErrorUnsupported;
}
AAX_Result CFixedTransport::GetBarBeatPosition(std::int32_t*, std::int32_t*, std::int64_t*,
                                               std::int64_t) const
{
    return kAAX_ErrorUnsupported;
}
AAX_Result CFixedTransport::GetTicksPerQuarter(std::uint32_t*) const { return kAAX_ErrorUnsupported; }
AAX_Result CFixedTransport::GetCurrentTicksPerBeat(std::uint32_t*) const { return kAAX_ErrorUnsupported; }
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
