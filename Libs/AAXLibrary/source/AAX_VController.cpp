#include "Libs/AAXLibrary/source/AAX_VController.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_CallHost.h"

namespace
{
constexpr AAX_Result kNoSecondVersion = kAAX_ErrorUnsupported;
}

AAX_VController::AAX_VController(IACFUnknown* inHost)
    : mController(ACFPtr<AAX_IACFController>::Query(inHost, IID_IAAXControllerV1)),
      mControllerV2(ACFPtr<AAX_IACFController_V2>::Query(inHost, IID_IAAXControllerV2))
{
}

AAX_Result AAX_VController::PostPacket(AAX_CFieldIndex inField, const void* inData, std::uint32_t inSize)
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::PostPacket, inField, inData, inSize);
}

AAX_Result AAX_VController::GetEffectID(AAX_IString* outID) const
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::GetEffectID, outID);
}

AAX_Result AAX_VController::GetSampleRate(AAX_CSampleRate* outRate) const
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::GetSampleRate, outRate);
}

AAX_Result AAX_VController::GetInputStemFormat(std::int32_t* outFormat) const
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::GetInputStemFormat, outFormat);
}

AAX_Result AAX_VController::GetOutputStemFormat(std::int32_t* outFormat) const
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::GetOutputStemFormat, outFormat);
}

AAX_Result AAX_VController::GetTODLocation(AAX_CTimeOfDay* outLocation) const
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::GetTODLocation, outLocation);
}

AAX_Result AAX_VController::GetSignalLatency(std::int32_t* outSamples) const
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::GetSignalLatency, outSamples);
}

AAX_Result AAX_VController::SetSignalLatency(std::int32_t inSamples)
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::SetSignalLatency, inSamples);
}

AAX_Result AAX_VController::GetCycleCount(AAX_EProperty inWhich, AAX_CPropertyValue* outCycles) const
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::GetCycleCount, inWhich, outCycles);
}

AAX_Result AAX_VController::SetCycleCount(AAX_EProperty* ioWhich, AAX_CPropertyValue* ioCycles,
                                          std::int32_t inCount)
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::SetCycleCount, ioWhich, ioCycles, inCount);
}

AAX_Result AAX_VController::GetCurrentMeterValue(AAX_CTypeID inMeter, float* outValue) const
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::GetCurrentMeterValue, inMeter, outValue);
}

AAX_Result AAX_VController::GetMeterPeakValue(AAX_CTypeID inMeter, float* outValue) const
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::GetMeterPeakValue, inMeter, outValue);
}

AAX_Result AAX_VController::ClearMeterPeakValue(AAX_CTypeID inMeter) const
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::ClearMeterPeakValue, inMeter);
}

AAX_Result AAX_VController::GetMeterClipped(AAX_CTypeID inMeter, AAX_CBoolean* outClipped) const
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::GetMeterClipped, inMeter, outClipped);
}

AAX_Result AAX_VController::ClearMeterClipped(AAX_CTypeID inMeter) const
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::ClearMeterClipped, inMeter);
}

AAX_Result AAX_VController::GetMeterCount(std::uint32_t* outCount) const
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::GetMeterCount, outCount);
}

AAX_Result AAX_VController::GetNextMIDIPacket(AAX_CFieldIndex* outField, AAX_CMidiPacket* outPacket)
{
    return AAX_CallHost(mController.Get(), &AAX_IACFController::GetNextMIDIPacket, outField, outPacket);
}

AAX_Result AAX_VController::SendNotification(AAX_CTypeID inType, const void* inData, std::uint32_t inSize)
{
    return AAX_CallHost<kNoSecondVersion>(mControllerV2.Get(), &AAX_IACFController_V2::SendNotification,
                                          inType, inData, inSize);
}

AAX_Result AAX_VController::GetHybridSignalLatency(std::int32_t* outSamples) const
{
    return AAX_CallHost<kNoSecondVersion>(mControllerV2.Get(), &AAX_IACFController_V2::GetHybridSignalLatency,
                                          outSamples);
}

AAX_Result AAX_VController::GetHostName(AAX_IString* outName) const
{
    return AAX_CallHost<kNoSecondVersion>(mControllerV2.Get(), &AAX_IACFController_V2::GetHostName, outName);
}

AAX_Result AAX_VController::GetCurrentAutomationTimestamp(AAX_CTransportCounter* outTimestamp) const
{
    if (!mControllerV2 && outTimestamp != nullptr)
        *outTimestamp = 0;
    return AAX_CallHost<kNoSecondVersion>(
        mControllerV2.Get(), &AAX_IACFController_V2::GetCurrentAutomationTimestamp, outTimestamp);
}
