#include "Libs/AAXLibrary/source/AAX_VTransport.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_CallHost.h"

AAX_VTransport::AAX_VTransport(IACFUnknown* inHost)
    : mTransport(ACFPtr<AAX_IACFTransport>::Query(inHost, IID_IAAXTransportV1)),
      mTransportV2(ACFPtr<AAX_IACFTransport_V2>::Query(inHost, IID_IAAXTransportV2))
{
}

AAX_Result AAX_VTransport::GetCurrentTempo(double* outBeatsPerMinute) const
{
    return AAX_CallHost(mTransport.Get(), &AAX_IACFTransport::GetCurrentTempo, outBeatsPerMinute);
}

AAX_Result AAX_VTransport::GetCurrentMeter(std::int32_t* outNumerator, std::int32_t* outDenominator) const
{
    return AAX_CallHost(mTransport.Get(), &AAX_IACFTransport::GetCurrentMeter, outNumerator, outDenominator);
}

AAX_Result AAX_VTransport::IsTransportPlaying(bool* outPlaying) const
{
    return AAX_CallHost(mTransport.Get(), &AAX_IACFTransport::IsTransportPlaying, outPlaying);
}

AAX_Result AAX_VTransport::GetCurrentTickPosition(std::int64_t* outTicks) const
{
    return AAX_CallHost(mTransport.Get(), &AAX_IACFTransport::GetCurrentTickPosition, outTicks);
}

AAX_Result AAX_VTransport::GetCurrentLoopPosition(bool* outLooping, std::int64_t* outStartTick,
                                                  std::int64_t* outEndTick) const
{
    return AAX_CallHost(mTransport.Get(), &AAX_IACFTransport::GetCurrentLoopPosition, outLooping,
                        outStartTick, outEndTick);
}

AAX_Result AAX_VTransport::GetCurrentNativeSampleLocation(std::int64_t* outSamples) const
{
    return AAX_CallHost(mTransport.Get(), &AAX_IACFTransport::GetCurrentNativeSampleLocation, outSamples);
}

AAX_Result AAX_VTransport::GetCustomTickPosition(std::int64_t* outTicks, std::int64_t inSampleLocation) const
{
    return AAX_CallHost(mTransport.Get(), &AAX_IACFTransport::GetCustomTickPosition, outTicks,
                        inSampleLocation);
}

AAX_Result AAX_VTransport::GetBarBeatPosition(std::int32_t* outBars, std::int32_t* outBeats,
                                              std::int64_t* outDisplayTicks,
                                              std::int64_t inSampleLocation) const
{
    return AAX_CallHost(mTransport.Get(), &AAX_IACFTransport::GetBarBeatPosition, outBars, outBeats,
                        outDisplayTicks, inSampleLocation);
}

AAX_Result AAX_VTransport::GetTicksPerQuarter(std::uint32_t* outTicks) const
{
    return AAX_CallHost(mTransport.Get(), &AAX_IACFTransport::GetTicksPerQuarter, outTicks);
}

AAX_Result AAX_VTransport::GetCurrentTicksPerBeat(std::uint32_t* outTicks) const
{
    return AAX_CallHost(mTransport.Get(), &AAX_IACFTransport::GetCurrentTicksPerBeat, outTicks);
}

AAX_Result AAX_VTransport::GetTimelineSelectionStartPosition(std::int64_t* outSamples) const
{
    return AAX_CallHost(mTransportV2.Get(), &AAX_IACFTransport_V2::GetTimelineSelectionStartPosition,
                        outSamples);
}

AAX_Result AAX_VTransport::GetTimeCodeInfo(std::int32_t* outFrameRate, std::int32_t* outOffset) const
{
    return AAX_CallHost(mTransportV2.Get(), &AAX_IACFTransport_V2::GetTimeCodeInfo, outFrameRate, outOffset);
}

AAX_Result AAX_VTransport::GetFeetFramesInfo(std::int32_t* outFeetFramesRate, std::int64_t* outOffset) const
{
    return AAX_CallHost(mTransportV2.Get(), &AAX_IACFTransport_V2::GetFeetFramesInfo, outFeetFramesRate,
                        outOffset);
}
