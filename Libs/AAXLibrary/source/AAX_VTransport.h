#pragma once
#include "Interfaces/AAX/AAX_IACFHost.h"
#include "Interfaces/AAX/AAX_ITransport.h"
#include "Interfaces/ACF/ACFPtr.h"

/**
 * The host's transport as an instance or its editor reaches it outside the render call.
 *
 * A host may offer either version of the interface or none: calls of a missing one answer
 * kAAX_ErrorNullObject. Arguments and answers pass unchanged.
 */
class AAX_VTransport final : public AAX_ITransport
{
public:
    explicit AAX_VTransport(IACFUnknown* inHost); // may be null: then both versions are missing

    AAX_Result GetCurrentTempo(double* outBeatsPerMinute) const override;
    AAX_Result GetCurrentMeter(std::int32_t* outNumerator, std::int32_t* outDenominator) const override;
    AAX_Result IsTransportPlaying(bool* outPlaying) const override;
    AAX_Result GetCurrentTickPosition(std::int64_t* outTicks) const override;
    AAX_Result GetCurrentLoopPosition(bool* outLooping, std::int64_t* outStartTick,
                                      std::int64_t* outEndTick) const override;
    AAX_Result GetCurrentNativeSampleLocation(std::int64_t* outSamples) const override;
    AAX_Result GetCustomTickPosition(std::int64_t* outTicks, std::int64_t inSampleLocation) const override;
    AAX_Result GetBarBeatPosition(std::int32_t* outBars, std::int32_t* outBeats,
                                  std::int64_t* outDisplayTicks,
                                  std::int64_t inSampleLocation) const override;
    AAX_Result GetTicksPerQuarter(std::uint32_t* outTicks) const override;
    AAX_Result GetCurrentTicksPerBeat(std::uint32_t* outTicks) const override;
    AAX_Result GetTimelineSelectionStartPosition(std::int64_t* outSamples) const override;
    AAX_Result GetTimeCodeInfo(std::int32_t* outFrameRate, std::int32_t* outOffset) const override;
    AAX_Result GetFeetFramesInfo(std::int32_t* outFeetFramesRate, std::int64_t* outOffset) const override;

private:
    ACFPtr<AAX_IACFTransport> mTransport;
    ACFPtr<AAX_IACFTransport_V2> mTransportV2;
};
