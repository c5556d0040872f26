#pragma once
#include "Interfaces/AAX/AAX_IACFDescription.h"
#include "Tools/aaxhost/host/CCountedObject.h"
#include "Tools/aaxhost/host/HostDescription.h"

/** A component that the module describes. A call with a foreign property map or a null callback is refused.
 */
class CHostComponentDescriptor final : public CCountedObject<AAX_IACFComponentDescriptor>
{
public:
    explicit CHostComponentDescriptor(CHostLog& inLog);
    const SComponent& Component() const noexcept { return mComponent; }
    /** The render record has a pointer for every index up to the last, so the host sets a bound to it. */
    static constexpr AAX_CFieldIndex kMaxFields = 1024;

    AAX_Result Clear() override;
    AAX_Result AddReservedField(AAX_CFieldIndex field, std::uint32_t type) override;
    AAX_Result AddAudioIn(AAX_CFieldIndex field) override;
    AAX_Result AddAudioOut(AAX_CFieldIndex field) override;
    AAX_Result AddAudioBufferLength(AAX_CFieldIndex field) override;
    AAX_Result AddSampleRate(AAX_CFieldIndex field) override;
    AAX_Result AddClock(AAX_CFieldIndex field) override;
    AAX_Result AddSideChainIn(AAX_CFieldIndex field) override;
    AAX_Result AddDataInPort(AAX_CFieldIndex field, std::uint32_t size, std::int32_t type) override;
    AAX_Result AddAuxOutputStem(AAX_CFieldIndex field, std::int32_t stemFormat, const char* name) override;
    AAX_Result AddPrivateData(AAX_CFieldIndex field, std::int32_t size, std::uint32_t options) override;
    AAX_Result AddDmaInstance(AAX_CFieldIndex field, std::int32_t mode) override;
    AAX_Result AddMIDINode(AAX_CFieldIndex field, AAX_EMIDINodeType type, const char* name,
                           std::uint32_t channelMask) override;
    AAX_Result AddProcessProc_Native(AAX_CProcessProc process, IACFUnknown* propertyMap,
                                     AAX_CInstanceInitProc instanceInit, AAX_CBackgroundProc background,
                                     AAX_CSelector* outID) override;
    AAX_Result AddProcessProc_TI(const char* dllName, const char* processName, IACFUnknown* propertyMap,
                                 const char* instanceInitName, const char* backgroundName,
                                 AAX_CSelector* outID) override;
    AAX_Result AddMeters(AAX_CFieldIndex field, const AAX_CTypeID* meterIDs, std::uint32_t count) override;

private:
    /** Logs the call and adds the field, unless the call is to fail. */
    AAX_Result AddField(const char* inName, const std::string& inArguments, SField inField);

    SComponent mComponent;
};
