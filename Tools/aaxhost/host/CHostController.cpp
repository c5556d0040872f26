#include "Tools/aaxhost/host/CHostController.h"

#include "Interfaces/AAX/AAX_IString.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CInstanceHost.h"
#include "Tools/aaxhost/host/HostNames.h"

#include <fmt/format.h>

namespace
{
/** Stores an answer unless the call is to fail. */
template <class T, class Value>
AAX_Result Answer(AAX_Result inFault, T* out, Value inValue)
{
    if (inFault != kAAX_Success)
        return inFault;
    if (out == nullptr)
        return kAAX_ErrorNullArgument;
    *out = inValue;
    return kAAX_Success;
}

std::vector<std::byte> BytesOf(const void* inData, std::uint32_t inSize)
{
    const auto* bytes = static_cast<const std::byte*>(inData);
    return bytes != nullptr ? std::vector<std::byte>(bytes, bytes + inSize) : std::vector<std::byte>();
}
} // namespace

CHostController::CHostController(CHostLog& inLog, CInstanceHost& inOwner) : mLog(inLog), mOwner(inOwner) {}

const std::vector<std::byte>* CHostController::Packet(AAX_CFieldIndex inField) const
{
    const auto found = mPackets.find(inField);
    return found == mPackets.end() ? nullptr : &found->second;
}

ACFRESULT CHostController::QueryInterface(const acfIID& iid, void** out)
{
    return mOwner.QueryInterface(iid, out);
}

acfUInt32 CHostController::AddRef() { return mOwner.AddRef(); }

acfUInt32 CHostController::Release() { return mOwner.Release(); }

AAX_Result CHostController::GetEffectID(AAX_IString* id) const
{
    return Answer(mLog.Record("GetEffectID", {}), id, mState.mEffectID.c_str());
}

AAX_Result CHostController::GetSampleRate(AAX_CSampleRate* rate) const
{
    return Answer(mLog.Record("GetSampleRate", {}), rate, mState.mSampleRate);
}

AAX_Result CHostController::GetInputStemFormat(std::int32_t* format) const
{
    return Answer(mLog.Record("GetInputStemFormat", {}), format, mState.mInputStemFormat);
}

AAX_Result CHostController::GetOutputStemFormat(std::int32_t* format) const
{
    return Answer(mLog.Record("GetOutputStemFormat", {}), format, mState.mOutputStemFormat);
}

AAX_Result CHostController::GetSignalLatency(std::int32_t* samples) const
{
    return Answer(mLog.Record("GetSignalLatency", {}), samples, mState.mSignalLatency);
}

AAX_Result CHostController::GetCycleCount(AAX_EProperty which, AAX_CPropertyValue* cycles) const
{
    const AAX_Result fault = mLog.Record("GetCycleCount", std::to_string(which));
    const auto found = mState.mCycles.find(which);
    return Answer(fault, cycles, found == mState.mCycles.end() ? 0 : found->second);
}

AAX_Result CHostController::GetTODLocation(AAX_CTimeOfDay* location) const
{
    return Answer(mLog.Record("GetTODLocation", {}), location, mState.mTimeOfDay);
}

AAX_Result CHostController::SetSignalLatency(std::int32_t samples)
{
    if (const AAX_Result fault = mLog.Record("SetSignalLatency", std::to_string(samples)))
        return fault;
    mState.mSignalLatency = samples;
    mState.mLatencyChanges.push_back({mState.mFramesRendered, samples});
    return kAAX_Success;
}

AAX_Result CHostController::SetCycleCount(AAX_EProperty* which, AAX_CPropertyValue* cycles,
                                          std::int32_t count)
{
    if (const AAX_Result fault = mLog.Record("SetCycleCount", std::to_string(count)))
        return fault;
    if (which == nullptr || cycles == nullptr)
        return kAAX_ErrorNullArgument;
    for (std::int32_t i = 0; i < count; ++i)
        mState.mCycles[which[i]] = cycles[i];
    return kAAX_Success;
}

AAX_Result CHostController::PostPacket(AAX_CFieldIndex field, const void* data, std::uint32_t size)
{
    if (const AAX_Result fault = mLog.Record("PostPacket", fmt::format("{}, {} bytes", field, size)))
        return fault;
    if (data == nullptr && size > 0)
        return kAAX_ErrorNullArgument;
    mPackets[field] = BytesOf(data, size);
    return kAAX_Success;
}

AAX_Result CHostController::GetCurrentMeterValue(AAX_CTypeID meter, float* value) const
{
    return Answer(mLog.Record("GetCurrentMeterValue", NameOfFourCharCode(meter)), value, 0.0F);
}

AAX_Result CHostController::GetMeterPeakValue(AAX_CTypeID meter, float* value) const
{
    return Answer(mLog.Record("GetMeterPeakValue", NameOfFourCharCode(meter)), value, 0.0F);
}

AAX_Result CHostController::ClearMeterPeakValue(AAX_CTypeID meter) const
{
    return mLog.Record("ClearMeterPeakValue", NameOfFourCharCode(meter));
}

AAX_Result CHostController::GetMeterClipped(AAX_CTypeID meter, AAX_CBoolean* clipped) const
{
    return Answer(mLog.Record("GetMeterClipped", NameOfFourCharCode(meter)), clipped, AAX_CBoolean{0});
}

AAX_Result CHostController::ClearMeterClipped(AAX_CTypeID meter) const
{
    return mLog.Record("ClearMeterClipped", NameOfFourCharCode(meter));
}

AAX_Result CHostController::GetMeterCount(std::uint32_t* count) const
{
    return Answer(mLog.Record("GetMeterCount", {}), count, 0U);
}

AAX_Result CHostController::GetNextMIDIPacket(AAX_CFieldIndex*, AAX_CMidiPacket*)
{
    const AAX_Result fault = mLog.Record("GetNextMIDIPacket", {});
    return fault != kAAX_Success ? fault : kAAX_ErrorUnsupported; // packets reach the render call only
}

AAX_Result CHostController::SendNotification(AAX_CTypeID type, const void* data, std::uint32_t size)
{
    if (const AAX_Result fault =
            mLog.Record("SendNotification", fmt::format("{}, {} bytes", NameOfFourCharCode(type), size)))
        return fault;
    mNotifications.push_back({type, BytesOf(data, size)});
    return kAAX_Success;
}

AAX_Result CHostController::GetHybridSignalLatency(std::int32_t* samples) const
{
    return Answer(mLog.Record("GetHybridSignalLatency", {}), samples, mState.mHybridLatency);
}

AAX_Result CHostController::GetCurrentAutomationTimestamp(AAX_CTransportCounter* timestamp) const
{
    return Answer(mLog.Record("GetCurrentAutomationTimestamp", {}), timestamp, mState.mAutomationTimestamp);
}

AAX_Result CHostController::GetHostName(AAX_IString* name) const
{
    return Answer(mLog.Record("GetHostName", {}), name, mState.mHostName.c_str());
}
