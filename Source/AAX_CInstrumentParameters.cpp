#include "Source/AAX_CInstrumentParameters.h"

#include "Interfaces/AAX/AAX_IComponentDescriptor.h"
#include "Interfaces/AAX/AAX_IEffectDescriptor.h"
#include "Interfaces/AAX/AAX_IPropertyMap.h"
#include "Libs/AAXLibrary/source/AAX_CString.h"
#include "Source/AaxAdapter_Product.h"

#include <cstring>
#include <memory>

namespace
{
/** Size of a field that nothing reads: it only keeps the record's layout. */
constexpr std::int32_t kPlaceholderSize = 4;
constexpr std::uint32_t kAllChannels = 0xFFFF;
constexpr AAX_EProperty kProperty151 = 151;

/** A field that is either a MIDI node or, where none is needed, a placeholder. */
struct SNodeField
{
    AAX_CFieldIndex mField;
    bool mIsNeeded;
    AAX_EMIDINodeType mType;
    const char* mName;
    std::uint32_t mMask;
};

AAX_Result AddNodeOrPlaceholder(AAX_IComponentDescriptor& outComponent, const SNodeField& inNode)
{
    if (!inNode.mIsNeeded)
        return outComponent.AddPrivateData(inNode.mField, kPlaceholderSize, 0);
    return outComponent.AddMIDINode(inNode.mField, inNode.mType, inNode.mName, inNode.mMask);
}

AAX_Result AddNodes(AAX_IComponentDescriptor& outComponent, const AAX_SInstrumentSetupInfo& inInfo)
{
    AAX_Result result = AddNodeOrPlaceholder(
        outComponent, {kInstrumentField_GlobalNode, inInfo.mNeedsGlobalMIDI, AAX_eMIDINodeType_Global,
                       inInfo.mGlobalMIDINodeName, inInfo.mGlobalMIDIEventMask});
    result |= AddNodeOrPlaceholder(outComponent, {kInstrumentField_InputNode, inInfo.mNeedsInputMIDI,
                                                  AAX_eMIDINodeType_LocalInput, inInfo.mInputMIDINodeName,
                                                  inInfo.mInputMIDIChannelMask});
    // The transport node's own name, not the record's: hosts know it by this one.
    result |= AddNodeOrPlaceholder(outComponent, {kInstrumentField_TransportNode, inInfo.mNeedsTransport,
                                                  AAX_eMIDINodeType_Transport, "Transport", kAllChannels});
    for (std::int32_t k = 0; k < kMaxAdditionalMIDINodes; ++k)
    {
        AAX_CString name(inInfo.mInputMIDINodeName);
        if (k > 0)
            name.AppendNumber(k + 1);
        result |= AddNodeOrPlaceholder(
            outComponent, {kInstrumentField_AdditionalInputNodes + static_cast<AAX_CFieldIndex>(k),
                           k < inInfo.mNumAdditionalInputMIDINodes, AAX_eMIDINodeType_LocalInput, name.Get(),
                           inInfo.mInputMIDIChannelMask});
    }
    return result;
}

AAX_Result AddAudio(AAX_IComponentDescriptor& outComponent, const AAX_SInstrumentSetupInfo& inInfo)
{
    AAX_Result result = outComponent.AddAudioIn(kInstrumentField_AudioInputs);
    result |= outComponent.AddAudioOut(kInstrumentField_AudioOutputs);
    result |= outComponent.AddAudioBufferLength(kInstrumentField_NumSamples);
    result |= outComponent.AddClock(kInstrumentField_Clock);
    if (inInfo.mNumMeters < 1)
        result |= outComponent.AddPrivateData(kInstrumentField_Meters, kPlaceholderSize, 0);
    else
        result |= outComponent.AddMeters(kInstrumentField_Meters, inInfo.mMeterIDs,
                                         static_cast<std::uint32_t>(inInfo.mNumMeters));
    for (std::int32_t i = 0; i < inInfo.mNumAuxOutputStems; ++i)
    {
        const auto stem = static_cast<std::size_t>(i);
        result |= outComponent.AddAuxOutputStem(0, inInfo.mAuxOutputStemFormats[stem],
                                                inInfo.mAuxOutputStemNames[stem]);
    }
    return result;
}

AAX_Result AddProperties(AAX_IPropertyMap& outProperties, const AAX_SInstrumentSetupInfo& inInfo)
{
    const auto identity = [](AAX_CTypeID inCode) { return static_cast<AAX_CPropertyValue>(inCode); };
    AAX_Result result = kAAX_Success;
    if (inInfo.mUseProperty151)
        result |= outProperties.AddProperty(kProperty151, 1);
    result |= outProperties.AddProperty(kAAX_PropertyInputStemFormat, inInfo.mInputStemFormat);
    result |= outProperties.AddProperty(kAAX_PropertyOutputStemFormat, inInfo.mOutputStemFormat);
    result |= outProperties.AddProperty(kAAX_PropertyCanBypass, inInfo.mCanBypass ? 1 : 0);
    result |= outProperties.AddProperty(kAAX_PropertyManufacturerID, identity(inInfo.mManufacturerID));
    result |= outProperties.AddProperty(kAAX_PropertyProductID, identity(inInfo.mProductID));
    result |= outProperties.AddProperty(kAAX_PropertyPluginID, identity(inInfo.mPluginID));
    return result;
}
} // namespace

AAX_Result AAX_CInstrumentParameters::StaticDescribe(AAX_IEffectDescriptor* outDescriptor,
                                                     const AAX_SInstrumentSetupInfo& inInfo)
{
    const std::unique_ptr<AAX_IComponentDescriptor> component = outDescriptor->NewComponentDescriptor();
    if (component == nullptr)
        return kAAX_ErrorNullObject;
    AAX_Result result = AddNodes(*component, inInfo);
    result |= AddAudio(*component, inInfo);
    result |= component->AddPrivateData(kInstrumentField_PrivateData, sizeof(void*), 0);
    if (inInfo.mNeedsOutputMIDI)
        result |= component->AddMIDINode(kInstrumentField_OutputNode, AAX_eMIDINodeType_LocalOutput,
                                         inInfo.mOutputMIDINodeName, kAllChannels);

    const std::unique_ptr<AAX_IPropertyMap> properties = component->NewPropertyMap();
    if (properties == nullptr)
        return result | kAAX_ErrorNullObject;
    result |= AddProperties(*properties, inInfo);
    result |= component->AddProcessProc_Native(ProductRenderCallback(), properties.get(), nullptr, nullptr,
                                               nullptr);
    result |= outDescriptor->AddComponent(component.get());
    return result;
}

RenderCallback PlainRenderCallback() noexcept
{
    return reinterpret_cast<RenderCallback>(&AAX_CInstrumentParameters::StaticRenderAudio);
}

void AAX_CInstrumentParameters::StaticRenderAudio(AAX_SInstrumentRenderInfo* const inBegin[],
                                                  const void* inEnd)
{
    for (AAX_SInstrumentRenderInfo* const* record = inBegin; record < inEnd; ++record)
    {
        AAX_CInstrumentParameters** const slot = (*record)->mPrivateData;
        if (slot != nullptr && *slot != nullptr) [[likely]]
            (*slot)->RenderAudio(*record);
    }
}

AAX_Result AAX_CInstrumentParameters::ResetFieldData(AAX_CFieldIndex inField, void* outData,
                                                     std::uint32_t inSize) const
{
    if (inField != kInstrumentField_PrivateData)
        return AAX_CEffectParameters::ResetFieldData(inField, outData, inSize);
    if (outData == nullptr)
        return kAAX_ErrorNullArgument;
    std::memset(outData, 0, inSize);
    const AAX_CInstrumentParameters* const self = this;
    if (inSize >= sizeof(void*))
        std::memcpy(outData, &self, sizeof(void*));
    return kAAX_Success;
}

void AAX_CInstrumentParameters::RenderAudio(AAX_SInstrumentRenderInfo*) {}
