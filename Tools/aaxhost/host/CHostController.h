#pragma once
#include "Interfaces/AAX/AAX_IACFHost.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

class CHostLog;
class CInstanceHost;

/** A latency and from when on it holds. */
struct SLatencyChange
{
    std::int64_t mFrame = 0; // as many were rendered before
    std::int32_t mSamples = 0;
    bool operator==(const SLatencyChange&) const = default;
};

/** What the controller answers; latency and cycles are written by the module. */
struct SControllerState
{
    std::string mEffectID;
    float mSampleRate = 44100.0F; // Hz
    std::int32_t mInputStemFormat = AAX_eStemFormat_Stereo;
    std::int32_t mOutputStemFormat = AAX_eStemFormat_Stereo;
    std::int32_t mSignalLatency = 0;             // samples
    std::vector<SLatencyChange> mLatencyChanges; // each call that told one
    std::int64_t mFramesRendered = 0;            // kept by whoever renders
    std::int32_t mHybridLatency = 0;             // samples
    std::int64_t mTimeOfDay = 0;
    std::int64_t mAutomationTimestamp = 0;
    std::string mHostName = "aaxhost";
    std::map<AAX_EProperty, AAX_CPropertyValue> mCycles;
};

struct SNotification
{
    AAX_CTypeID mType = 0;
    std::vector<std::byte> mData;
};

/**
 * The controller of one instance.
 *
 * Threads: the module's main thread.
 */
class CHostController final : public AAX_IACFController_V2
{
public:
    CHostController(CHostLog& inLog, CInstanceHost& inOwner); // the owner counts references, answers queries
    CHostController(const CHostController&) = delete;
    CHostController& operator=(const CHostController&) = delete;

    SControllerState& State() noexcept { return mState; }
    /** The last packet posted for a field; null when there was none. Valid until the next packet of it. */
    const std::vector<std::byte>* Packet(AAX_CFieldIndex inField) const;
    const std::vector<SNotification>& Notifications() const noexcept { return mNotifications; }

    ACFRESULT QueryInterface(const acfIID& iid, void** out) override;
    acfUInt32 AddRef() override;
    acfUInt32 Release() override;

    AAX_Result GetEffectID(AAX_IString* id) const override;
    AAX_Result GetSampleRate(AAX_CSampleRate* rate) const override;
    AAX_Result GetInputStemFormat(std::int32_t* format) const override;
    AAX_Result GetOutputStemFormat(std::int32_t* format) const override;
    AAX_Result GetSignalLatency(std::int32_t* samples) const override;
    AAX_Result GetCycleCount(AAX_EProperty which, AAX_CPropertyValue* cycles) const override;
    AAX_Result GetTODLocation(AAX_CTimeOfDay* location) const override;
    AAX_Result SetSignalLatency(std::int32_t samples) override;
    AAX_Result SetCycleCount(AAX_EProperty* which, AAX_CPropertyValue* cycles, std::int32_t count) override;
    AAX_Result PostPacket(AAX_CFieldIndex field, const void* data, std::uint32_t size) override;
    AAX_Result GetCurrentMeterValue(AAX_CTypeID meter, float* value) const override;
    AAX_Result GetMeterPeakValue(AAX_CTypeID meter, float* value) const override;
    AAX_Result ClearMeterPeakValue(AAX_CTypeID meter) const override;
    AAX_Result GetMeterClipped(AAX_CTypeID meter, AAX_CBoolean* clipped) const override;
    AAX_Result ClearMeterClipped(AAX_CTypeID meter) const override;
    AAX_Result GetMeterCount(std::uint32_t* count) const override;
    AAX_Result GetNextMIDIPacket(AAX_CFieldIndex* field, AAX_CMidiPacket* packet) override;
    AAX_Result SendNotification(AAX_CTypeID type, const void* data, std::uint32_t size) override;
    AAX_Result GetHybridSignalLatency(std::int32_t* samples) const override;
    AAX_Result GetCurrentAutomationTimestamp(AAX_CTransportCounter* timestamp) const override;
    AAX_Result GetHostName(AAX_IString* name) const override;

private:
    CHostLog& mLog;
    CInstanceHost& mOwner;
    SControllerState mState;
    std::map<AAX_CFieldIndex, std::vector<std::byte>> mPackets;
    std::vector<SNotification> mNotifications;
};
