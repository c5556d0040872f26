#pragma once
#include "Interfaces/AAX/AAX_IACFDescription.h"
#include "Interfaces/AAX/AAX_IComponentDescriptor.h"
#include "Interfaces/ACF/ACFPtr.h"

/** A component descriptor made by the host; every call without a host object answers kAAX_ErrorNullObject. */
class AAX_VComponentDescriptor final : public AAX_IComponentDescriptor
{
public:
    explicit AAX_VComponentDescriptor(IACFUnknown* inHost);
    /** @return null when the host makes no component descriptor. */
    static std::unique_ptr<AAX_IComponentDescriptor> Create(IACFUnknown* inHost);

    AAX_Result Clear() override;
    AAX_Result AddReservedField(AAX_CFieldIndex inField, std::uint32_t inType) override;
    AAX_Result AddAudioIn(AAX_CFieldIndex inField) override;
    AAX_Result AddAudioOut(AAX_CFieldIndex inField) override;
    AAX_Result AddAudioBufferLength(AAX_CFieldIndex inField) override;
    AAX_Result AddSampleRate(AAX_CFieldIndex inField) override;
    AAX_Result AddClock(AAX_CFieldIndex inField) override;
    AAX_Result AddSideChainIn(AAX_CFieldIndex inField) override;
    AAX_Result AddDataInPort(AAX_CFieldIndex inField, std::uint32_t inPacketSize,
                             std::int32_t inType) override;
    AAX_Result AddAuxOutputStem(AAX_CFieldIndex inField, std::int32_t inStemFormat,
                                const char* inName) override;
    AAX_Result AddPrivateData(AAX_CFieldIndex inField, std::int32_t inSize, std::uint32_t inOptions) override;
    AAX_Result AddDmaInstance(AAX_CFieldIndex inField, std::int32_t inMode) override;
    AAX_Result AddMIDINode(AAX_CFieldIndex inField, AAX_EMIDINodeType inType, const char* inName,
                           std::uint32_t inChannelMask) override;
    std::unique_ptr<AAX_IPropertyMap> NewPropertyMap() override;
    AAX_Result AddProcessProc_Native(AAX_CProcessProc inProcess, AAX_IPropertyMap* inProperties,
                                     AAX_CInstanceInitProc inInstanceInit, AAX_CBackgroundProc inBackground,
                                     AAX_CSelector* outProcID) override;
    AAX_Result AddProcessProc_TI(const char* inDLLName, const char* inProcessName,
                                 AAX_IPropertyMap* inProperties, const char* inInstanceInitName,
                                 const char* inBackgroundName, AAX_CSelector* outProcID) override;
    AAX_Result AddMeters(AAX_CFieldIndex inField, const AAX_CTypeID* inMeterIDs,
                         std::uint32_t inCount) override;
    IACFUnknown* GetIUnknown() const override;

private:
    ACFPtr<IACFUnknown> mHost;
    ACFPtr<AAX_IACFComponentDescriptor> mDescriptor;
};
