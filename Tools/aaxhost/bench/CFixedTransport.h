#pragma once
#include "Interfaces/AAX/AAX_ITransport.h"

/** A transport that plays; its answers cost next to nothing and call nobody. */
class CFixedTransport final : public AAX_ITransport
{
public:
    AAX_Result GetCurrentTempo(double* outTempo) const override;
    AAX_Result GetCurrentMeter(std::int32_t*, std::int32_t*) const override;
    AAX_Result IsTransportPlaying(bool* outPlaying) const override;
    AAX_Result GetCurrentTickPosition(std::int64_t*) const override;
    AAX_Result GetCurrentLoopPosition(bool*, std::int64_t*, std::int64_t*) const override;
    AAX_Result GetCurrentNativeSampleLocation(std::int64_t* outSamples) const override;
    AAX_Result GetCustomTickPosition(std::int64_t*, std::int64_t) const override;
    AAX_Result GetBarBeatPosition(std::int32_t*, std::int32_t*, std::int64_t*, std::int64_t) const override;
    AAX_Result GetTicksPerQuarter(std::uint32_t*) const override;
    AAX_Result GetCurrentTicksPerBeat(std::uint32_t*) const override;
    AAX_Result GetTimelineSelectionStartPosition(std::int64_t*) const override;
    AAX_Result GetTimeCodeInfo(std::int32_t*, std::int32_t*) const override;
    AAX_Result GetFeetFramesInfo(std::int32_t*, std::int64_t*) const override;

private:
    mutable std::int64_t mLocation = 0; // samples; moves with each question
};
