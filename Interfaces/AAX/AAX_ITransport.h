#pragma once
#include "Interfaces/AAX/AAX_Types.h"

/**
 * The host's transport as the render call sees it. The order of the declarations is the order of the slots.
 *
 * Positions are samples on the timeline unless the name says ticks. Safe on the render thread.
 */
class AAX_ITransport
{
public:
    virtual ~AAX_ITransport() = default;
    virtual AAX_Result GetCurrentTempo(double* beatsPerMinute) const = 0;
    virtual AAX_Result GetCurrentMeter(std::int32_t* numerator, std::int32_t* denominator) const = 0;
    virtual AAX_Result IsTransportPlaying(bool* playing) const = 0;
    virtual AAX_Result GetCurrentTickPosition(std::int64_t* ticks) const = 0;
    virtual AAX_Result GetCurrentLoopPosition(bool* looping, std::int64_t* startTick,
                                              std::int64_t* endTick) const = 0;
    virtual AAX_Result GetCurrentNativeSampleLocation(std::int64_t* samples) const = 0;
    virtual AAX_Result GetCustomTickPosition(std::int64_t* ticks, std::int64_t sampleLocation) const = 0;
    virtual AAX_Result GetBarBeatPosition(std::int32_t* bars, std::int32_t* beats, std::int64_t* displayTicks,
                                          std::int64_t sampleLocation) const = 0;
    virtual AAX_Result GetTicksPerQuarter(std::uint32_t* ticks) const = 0;
    virtual AAX_Result GetCurrentTicksPerBeat(std::uint32_t* ticks) const = 0;
    virtual AAX_Result GetTimelineSelectionStartPosition(std::int64_t* samples) const = 0;
    virtual AAX_Result GetTimeCodeInfo(std::int32_t* frameRate, std::int32_t* offset) const = 0;
    virtual AAX_Result GetFeetFramesInfo(std::int32_t* feetFramesRate, std::int64_t* offset) const = 0;
};
