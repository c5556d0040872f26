#pragma once
#include "Interfaces/AAX/AAX_Types.h"

class AAX_IString;

/** The host's side of one instance. Host's main thread, but for what a host allows elsewhere. */
class AAX_IController
{
public:
    virtual ~AAX_IController() = default;
    /** Hands data to the algorithm's record. @param inSize bytes; the host copies them. */
    [[nodiscard]] virtual AAX_Result PostPacket(AAX_CFieldIndex inField, const void* inData,
                                                std::uint32_t inSize) = 0;
    [[nodiscard]] virtual AAX_Result GetEffectID(AAX_IString* outID) const = 0;
    [[nodiscard]] virtual AAX_Result GetSampleRate(AAX_CSampleRate* outRate) const = 0;
    [[nodiscard]] virtual AAX_Result GetInputStemFormat(std::int32_t* outFormat) const = 0;
    [[nodiscard]] virtual AAX_Result GetOutputStemFormat(std::int32_t* outFormat) const = 0;
    [[nodiscard]] virtual AAX_Result GetTODLocation(AAX_CTimeOfDay* outLocation) const = 0;
    [[nodiscard]] virtual AAX_Result GetSignalLatency(std::int32_t* outSamples) const = 0;
    [[nodiscard]] virtual AAX_Result SetSignalLatency(std::int32_t inSamples) = 0;
    [[nodiscard]] virtual AAX_Result GetCycleCount(AAX_EProperty inWhich,
                                                   AAX_CPropertyValue* outCycles) const = 0;
    /** @param ioWhich, ioCycles arrays of `inCount` elements. */
    [[nodiscard]] virtual AAX_Result SetCycleCount(AAX_EProperty* ioWhich, AAX_CPropertyValue* ioCycles,
                                                   std::int32_t inCount) = 0;
    [[nodiscard]] virtual AAX_Result GetCurrentMeterValue(AAX_CTypeID inMeter, float* outValue) const = 0;
    [[nodiscard]] virtual AAX_Result GetMeterPeakValue(AAX_CTypeID inMeter, float* outValue) const = 0;
    [[nodiscard]] virtual AAX_Result ClearMeterPeakValue(AAX_CTypeID inMeter) const = 0;
    [[nodiscard]] virtual AAX_Result GetMeterClipped(AAX_CTypeID inMeter, AAX_CBoolean* outClipped) const = 0;
    [[nodiscard]] virtual AAX_Result ClearMeterClipped(AAX_CTypeID inMeter) const = 0;
    [[nodiscard]] virtual AAX_Result GetMeterCount(std::uint32_t* outCount) const = 0;
    [[nodiscard]] virtual AAX_Result GetNextMIDIPacket(AAX_CFieldIndex* outField,
                                                       AAX_CMidiPacket* outPacket) = 0;
    [[nodiscard]] virtual AAX_Result SendNotification(AAX_CTypeID inType, const void* inData,
                                                      std::uint32_t inSize) = 0;
    [[nodiscard]] virtual AAX_Result GetHybridSignalLatency(std::int32_t* outSamples) const = 0;
    [[nodiscard]] virtual AAX_Result GetHostName(AAX_IString* outName) const = 0;
    /** `outTimestamp` is 0 where the host has no such timestamp. */
    [[nodiscard]] virtual AAX_Result GetCurrentAutomationTimestamp(
        AAX_CTransportCounter* outTimestamp) const = 0;
};
