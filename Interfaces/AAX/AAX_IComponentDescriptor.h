#pragma once
#include "Interfaces/AAX/AAX_Types.h"

#include <memory>

class AAX_IPropertyMap;
class IACFUnknown;

/**
 * One algorithm of an effect and the fields of its render record, as the description fills them for the host.
 *
 * A field index is the position of the field's pointer in the record. Texts are copied.
 */
class AAX_IComponentDescriptor
{
public:
    virtual ~AAX_IComponentDescriptor() = default;
    [[nodiscard]] virtual AAX_Result Clear() = 0;
    [[nodiscard]] virtual AAX_Result AddReservedField(AAX_CFieldIndex inField, std::uint32_t inType) = 0;
    [[nodiscard]] virtual AAX_Result AddAudioIn(AAX_CFieldIndex inField) = 0;
    [[nodiscard]] virtual AAX_Result AddAudioOut(AAX_CFieldIndex inField) = 0;
    [[nodiscard]] virtual AAX_Result AddAudioBufferLength(AAX_CFieldIndex inField) = 0;
    [[nodiscard]] virtual AAX_Result AddSampleRate(AAX_CFieldIndex inField) = 0;
    [[nodiscard]] virtual AAX_Result AddClock(AAX_CFieldIndex inField) = 0;
    [[nodiscard]] virtual AAX_Result AddSideChainIn(AAX_CFieldIndex inField) = 0;
    [[nodiscard]] virtual AAX_Result AddDataInPort(AAX_CFieldIndex inField, std::uint32_t inPacketSize,
                                                   std::int32_t inType) = 0;
    [[nodiscard]] virtual AAX_Result AddAuxOutputStem(AAX_CFieldIndex inField, std::int32_t inStemFormat,
                                                      const char* inName) = 0;
    /** @param inSize bytes that the host keeps for the instance. */
    [[nodiscard]] virtual AAX_Result AddPrivateData(AAX_CFieldIndex inField, std::int32_t inSize,
                                                    std::uint32_t inOptions) = 0;
    [[nodiscard]] virtual AAX_Result AddDmaInstance(AAX_CFieldIndex inField, std::int32_t inMode) = 0;
    [[nodiscard]] virtual AAX_Result AddMIDINode(AAX_CFieldIndex inField, AAX_EMIDINodeType inType,
                                                 const char* inName, std::uint32_t inChannelMask) = 0;
    /** @return no properties yet; null when the host offers none. */
    virtual std::unique_ptr<AAX_IPropertyMap> NewPropertyMap() = 0;
    /** The procedures stay valid while the module is loaded; all but the first may be null. */
    [[nodiscard]] virtual AAX_Result AddProcessProc_Native(AAX_CProcessProc inProcess,
                                                           AAX_IPropertyMap* inProperties,
                                                           AAX_CInstanceInitProc inInstanceInit,
                                                           AAX_CBackgroundProc inBackground,
                                                           AAX_CSelector* outProcID) = 0;
    [[nodiscard]] virtual AAX_Result AddProcessProc_TI(const char* inDLLName, const char* inProcessName,
                                                       AAX_IPropertyMap* inProperties,
                                                       const char* inInstanceInitName,
                                                       const char* inBackgroundName,
                                                       AAX_CSelector* outProcID) = 0;
    [[nodiscard]] virtual AAX_Result AddMeters(AAX_CFieldIndex inField, const AAX_CTypeID* inMeterIDs,
                                               std::uint32_t inCount) = 0;
    /** The host's object, for handing it to another host call; not counted, null when there is none. */
    virtual IACFUnknown* GetIUnknown() const = 0;
};
