#include "Libs/AAXLibrary/source/AAX_VComponentDescriptor.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_CallHost.h"
#include "Libs/AAXLibrary/source/AAX_CreateHostComponent.h"
#include "Libs/AAXLibrary/source/AAX_VPropertyMap.h"

AAX_VComponentDescriptor::AAX_VComponentDescriptor(IACFUnknown* inHost)
    : mHost(inHost),
      mDescriptor(AAX_CreateHostComponent<AAX_IACFComponentDescriptor>(
          inHost, AAXCompID_AAXComponentDescriptor, IID_IAAXComponentDescriptorV1))
{
}

std::unique_ptr<AAX_IComponentDescriptor> AAX_VComponentDescriptor::Create(IACFUnknown* inHost)
{
    auto descriptor = std::make_unique<AAX_VComponentDescriptor>(inHost);
    return descriptor->mDescriptor ? std::move(descriptor) : nullptr;
}

AAX_Result AAX_VComponentDescriptor::Clear()
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::Clear);
}

AAX_Result AAX_VComponentDescriptor::AddReservedField(AAX_CFieldIndex inField, std::uint32_t inType)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddReservedField, inField, inType);
}

AAX_Result AAX_VComponentDescriptor::AddAudioIn(AAX_CFieldIndex inField)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddAudioIn, inField);
}

AAX_Result AAX_VComponentDescriptor::AddAudioOut(AAX_CFieldIndex inField)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddAudioOut, inField);
}

AAX_Result AAX_VComponentDescriptor::AddAudioBufferLength(AAX_CFieldIndex inField)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddAudioBufferLength, inField);
}

AAX_Result AAX_VComponentDescriptor::AddSampleRate(AAX_CFieldIndex inField)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddSampleRate, inField);
}

AAX_Result AAX_VComponentDescriptor::AddClock(AAX_CFieldIndex inField)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddClock, inField);
}

AAX_Result AAX_VComponentDescriptor::AddSideChainIn(AAX_CFieldIndex inField)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddSideChainIn, inField);
}

AAX_Result AAX_VComponentDescriptor::AddDataInPort(AAX_CFieldIndex inField, std::uint32_t inPacketSize,
                                                   std::int32_t inType)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddDataInPort, inField, inPacketSize,
                        inType);
}

AAX_Result AAX_VComponentDescriptor::AddAuxOutputStem(AAX_CFieldIndex inField, std::int32_t inStemFormat,
                                                      const char* inName)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddAuxOutputStem, inField,
                        inStemFormat, inName);
}

AAX_Result AAX_VComponentDescriptor::AddPrivateData(AAX_CFieldIndex inField, std::int32_t inSize,
                                                    std::uint32_t inOptions)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddPrivateData, inField, inSize,
                        inOptions);
}

AAX_Result AAX_VComponentDescriptor::AddDmaInstance(AAX_CFieldIndex inField, std::int32_t inMode)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddDmaInstance, inField, inMode);
}

AAX_Result AAX_VComponentDescriptor::AddMIDINode(AAX_CFieldIndex inField, AAX_EMIDINodeType inType,
                                                 const char* inName, std::uint32_t inChannelMask)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddMIDINode, inField, inType, inName,
                        inChannelMask);
}

std::unique_ptr<AAX_IPropertyMap> AAX_VComponentDescriptor::NewPropertyMap()
{
    return AAX_VPropertyMap::Create(mHost.Get());
}

AAX_Result AAX_VComponentDescriptor::AddProcessProc_Native(AAX_CProcessProc inProcess,
                                                           AAX_IPropertyMap* inProperties,
                                                           AAX_CInstanceInitProc inInstanceInit,
                                                           AAX_CBackgroundProc inBackground,
                                                           AAX_CSelector* outProcID)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddProcessProc_Native, inProcess,
                        AAX_UnknownOf(inProperties), inInstanceInit, inBackground, outProcID);
}

AAX_Result AAX_VComponentDescriptor::AddProcessProc_TI(const char* inDLLName, const char* inProcessName,
                                                       AAX_IPropertyMap* inProperties,
                                                       const char* inInstanceInitName,
                                                       const char* inBackgroundName, AAX_CSelector* outProcID)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddProcessProc_TI, inDLLName,
                        inProcessName, AAX_UnknownOf(inProperties), inInstanceInitName, inBackgroundName,
                        outProcID);
}

AAX_Result AAX_VComponentDescriptor::AddMeters(AAX_CFieldIndex inField, const AAX_CTypeID* inMeterIDs,
                                               std::uint32_t inCount)
{
    return AAX_CallHost(mDescriptor.Get(), &AAX_IACFComponentDescriptor::AddMeters, inField, inMeterIDs,
                        inCount);
}

IACFUnknown* AAX_VComponentDescriptor::GetIUnknown() const { return mDescriptor.Get(); }
