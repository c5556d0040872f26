#pragma once
#include "Interfaces/AAX/AAX_IACFHost.h"
#include "Interfaces/AAX/AAX_IController.h"
#include "Interfaces/ACF/ACFPtr.h"

/**
 * The host's controller of one instance.
 *
 * A host may offer either version of the interface or none: calls of a missing first version answer
 * kAAX_ErrorNullObject, those of a missing second one kAAX_ErrorUnsupported. Arguments and answers pass
 * unchanged.
 */
class AAX_VController final : public AAX_IController
{
public:
    explicit AAX_VController(IACFUnknown* inHost); // may be null: then both versions are missing

    AAX_Result PostPacket(AAX_CFieldIndex inField, const void* inData, std::uint32_t inSize) override;
    AAX_Result GetEffectID(AAX_IString* outID) const override;
    AAX_Result GetSampleRate(AAX_CSampleRate* outRate) const override;
    AAX_Result GetInputStemFormat(std::int32_t* outFormat) const override;
    AAX_Result GetOutputStemFormat(std::int32_t* outFormat) const override;
    AAX_Result GetTODLocation(AAX_CTimeOfDay* outLocation) const override;
    AAX_Result GetSignalLatency(std::int32_t* outSamples) const override;
    AAX_Result SetSignalLatency(std::int32_t inSamples) override;
    AAX_Result GetCycleCount(AAX_EProperty inWhich, AAX_CPropertyValue* outCycles) const override;
    AAX_Result SetCycleCount(AAX_EProperty* ioWhich, AAX_CPropertyValue* ioCycles,
                             std::int32_t inCount) override;
    AAX_Result GetCurrentMeterValue(AAX_CTypeID inMeter, float* outValue) const override;
    AAX_Result GetMeterPeakValue(AAX_CTypeID inMeter, float* outValue) const override;
    AAX_Result ClearMeterPeakValue(AAX_CTypeID inMeter) const override;
    AAX_Result GetMeterClipped(AAX_CTypeID inMeter, AAX_CBoolean* outClipped) const override;
    AAX_Result ClearMeterClipped(AAX_CTypeID inMeter) const override;
    AAX_Result GetMeterCount(std::uint32_t* outCount) const override;
    AAX_Result GetNextMIDIPacket(AAX_CFieldIndex* outField, AAX_CMidiPacket* outPacket) override;

    AAX_Result SendNotification(AAX_CTypeID inType, const void* inData, std::uint32_t inSize) override;
    AAX_Result GetHybridSignalLatency(std::int32_t* outSamples) const override;
    AAX_Result GetHostName(AAX_IString* outName) const override;
    AAX_Result GetCurrentAutomationTimestamp(AAX_CTransportCounter* outTimestamp) const override;

private:
    ACFPtr<AAX_IACFController> mController;
    ACFPtr<AAX_IACFController_V2> mControllerV2;
};
