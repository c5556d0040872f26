#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "Interfaces/ACF/ACFInterfaces.h"

class AAX_IString;

/**
 * What a host offers to an instance. The order of the declarations is the order of the slots; a second
 * version continues the table of the first.
 */

class AAX_IACFHostServices : public IACFUnknown
{
public:
    virtual AAX_Result Assert(const char* file, std::int32_t line, const char* note) = 0;
    virtual AAX_Result Trace(std::int32_t priority, const char* message) = 0;
};

class AAX_IACFController : public IACFUnknown
{
public:
    virtual AAX_Result GetEffectID(AAX_IString* id) const = 0;
    virtual AAX_Result GetSampleRate(AAX_CSampleRate* rate) const = 0;
    virtual AAX_Result GetInputStemFormat(std::int32_t* format) const = 0;
    virtual AAX_Result GetOutputStemFormat(std::int32_t* format) const = 0;
    virtual AAX_Result GetSignalLatency(std::int32_t* samples) const = 0;
    virtual AAX_Result GetCycleCount(AAX_EProperty which, AAX_CPropertyValue* cycles) const = 0;
    virtual AAX_Result GetTODLocation(AAX_CTimeOfDay* location) const = 0;
    virtual AAX_Result SetSignalLatency(std::int32_t samples) = 0;
    virtual AAX_Result SetCycleCount(AAX_EProperty* which, AAX_CPropertyValue* cycles,
                                     std::int32_t count) = 0;
    virtual AAX_Result PostPacket(AAX_CFieldIndex field, const void* data, std::uint32_t size) = 0;
    virtual AAX_Result GetCurrentMeterValue(AAX_CTypeID meter, float* value) const = 0;
    virtual AAX_Result GetMeterPeakValue(AAX_CTypeID meter, float* value) const = 0;
    virtual AAX_Result ClearMeterPeakValue(AAX_CTypeID meter) const = 0;
    virtual AAX_Result GetMeterClipped(AAX_CTypeID meter, AAX_CBoolean* clipped) const = 0;
    virtual AAX_Result ClearMeterClipped(AAX_CTypeID meter) const = 0;
    virtual AAX_Result GetMeterCount(std::uint32_t* count) const = 0;
    virtual AAX_Result GetNextMIDIPacket(AAX_CFieldIndex* field, AAX_CMidiPacket* packet) = 0;
};

class AAX_IACFController_V2 : public AAX_IACFController
{
public:
    virtual AAX_Result SendNotification(AAX_CTypeID type, const void* data, std::uint32_t size) = 0;
    virtual AAX_Result GetHybridSignalLatency(std::int32_t* samples) const = 0;
    virtual AAX_Result GetCurrentAutomationTimestamp(AAX_CTransportCounter* timestamp) const = 0;
    virtual AAX_Result GetHostName(AAX_IString* name) const = 0;
};

class AAX_IACFAutomationDelegate : public IACFUnknown
{
public:
    virtual AAX_Result RegisterParameter(AAX_CParamID id) = 0;
    virtual AAX_Result UnregisterParameter(AAX_CParamID id) = 0;
    virtual AAX_Result PostSetValueRequest(AAX_CParamID id, double normalizedValue) const = 0;
    virtual AAX_Result PostCurrentValue(AAX_CParamID id, double normalizedValue) const = 0;
    virtual AAX_Result PostTouchRequest(AAX_CParamID id) = 0;
    virtual AAX_Result PostReleaseRequest(AAX_CParamID id) = 0;
    virtual AAX_Result GetTouchState(AAX_CParamID id, AAX_CBoolean* touched) = 0;
};

/** Positions are samples on the timeline unless the name says ticks. */
class AAX_IACFTransport : public IACFUnknown
{
public:
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
};

class AAX_IACFTransport_V2 : public AAX_IACFTransport
{
public:
    virtual AAX_Result GetTimelineSelectionStartPosition(std::int64_t* samples) const = 0;
    virtual AAX_Result GetTimeCodeInfo(std::int32_t* frameRate, std::int32_t* offset) const = 0;
    virtual AAX_Result GetFeetFramesInfo(std::int32_t* feetFramesRate, std::int64_t* offset) const = 0;
};

class AAX_IACFViewContainer : public IACFUnknown
{
public:
    virtual std::int32_t GetType() = 0; // 1: a Cocoa view
    virtual void* GetPtr() = 0;
    virtual AAX_Result GetModifiers(std::uint32_t* modifiers) = 0;
    virtual AAX_Result SetViewSize(AAX_Point& size) = 0;
    virtual AAX_Result HandleParameterMouseDown(AAX_CParamID id, std::uint32_t modifiers) = 0;
    virtual AAX_Result HandleParameterMouseDrag(AAX_CParamID id, std::uint32_t modifiers) = 0;
    virtual AAX_Result HandleParameterMouseUp(AAX_CParamID id, std::uint32_t modifiers) = 0;
};
