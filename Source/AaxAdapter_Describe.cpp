#include "Interfaces/AAX/AAX_ICollection.h"
#include "Interfaces/AAX/AAX_IEffectDescriptor.h"
#include "Interfaces/AAX/AAX_Module.h"
#include "Source/AaxAdapter_Parameters.h"
#include "Source/AaxAdapter_Product.h"
#include "Source/CAaxEditor.h"
#include "Source/DescribedShape.h"
#include "Source/SourceVstPath.h"
#include "Source/StemLayout.h"
#include "Source/plugins/CVst2Host.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/ProductOptions.h"

#include <array>
#include <memory>
#include <span>

namespace
{
constexpr std::size_t kStemNameSize = 128;
constexpr std::uint32_t kInputMIDIChannels = 0x000F; // the node's mask of channels
constexpr std::uint32_t kGlobalMIDIEvents = 3;       // the node's mask of events

// The host reads these names after the description call; written by the host's loader thread, in each
// description.
std::array<std::array<char, kStemNameSize>, kMaxAuxOutputStems> gAuxOutputStemNames{};

void DescribeAuxStems(const CVst2Plugin& inPlugin, const SStemLayout& inLayout,
                      AAX_SInstrumentSetupInfo& outInfo)
{
    static_assert(sizeof(SIOPortDef::name) == kStemNameSize);
    const std::span<const SIOPortDef> outputs = inPlugin.OutputPorts();
    const auto nameOutput = ProductInstanceFactories().mNameOutput;
    long channel = 0;
    outInfo.mNumAuxOutputStems = inLayout.mNumAuxStems;
    for (std::size_t i = 0; i < static_cast<std::size_t>(inLayout.mNumAuxStems); ++i)
    {
        const SIOPortDef& port = outputs[i + 1];
        channel += outputs[i].channelCount;
        outInfo.mAuxOutputStemFormats[i] = inLayout.mAuxStems[i];
        if (nameOutput != nullptr)
            nameOutput(inPlugin, channel, port.channelCount, gAuxOutputStemNames[i]);
        else
            gAuxOutputStemNames[i] = port.name;
        outInfo.mAuxOutputStemNames[i] = gAuxOutputStemNames[i].data();
    }
}

AAX_SInstrumentSetupInfo SetupInfoOf(const CVst2Plugin& inPlugin, const char* inName)
{
    const SStemLayout layout = StemLayoutOfPorts(inPlugin.InputPorts(), inPlugin.OutputPorts());
    AAX_SInstrumentSetupInfo info;
    info.mInputStemFormat = layout.mInputStem;
    info.mOutputStemFormat = layout.mOutputStem;
    info.mManufacturerID = kManufacturerID;
    info.mProductID = info.mPluginID = static_cast<AAX_CTypeID>(inPlugin.GetUniqueId());
    info.mCanBypass = true;
    const SDescribedShape shape = ShapeOf(inPlugin);
    info.mNeedsInputMIDI = shape.mHasInputNode;
    info.mNeedsOutputMIDI = shape.mHasOutputNode;
    info.mOutputMIDINodeName = inName;
    info.mInputMIDINodeName = inName;
    info.mInputMIDIChannelMask = kInputMIDIChannels;
    info.mNeedsGlobalMIDI = true;
    info.mGlobalMIDIEventMask = kGlobalMIDIEvents;
    info.mNeedsTransport = true;
    DescribeAuxStems(inPlugin, layout, info);
    return info;
}

std::uint32_t CategoryOf(CVst2Plugin& inPlugin)
{
    if (kCategory != 0)
        return static_cast<std::uint32_t>(kCategory);
    return inPlugin.IsInstrument() ? kAAX_CategorySoftwareInstrument : kAAX_CategoryEffect;
}

AAX_Result DescribeComponents(AAX_IEffectDescriptor& outDescriptor, AAX_SInstrumentSetupInfo& ioInfo,
                              std::span<const SComponentChoice> inComponents)
{
    AAX_Result result = kAAX_Success;
    for (const auto& [stems, id] : inComponents)
    {
        ioInfo.mInputStemFormat = stems.mInput;
        ioInfo.mOutputStemFormat = stems.mOutput;
        ioInfo.mPluginID = id;
        result |= AAX_CInstrumentParameters::StaticDescribe(&outDescriptor, ioInfo);
    }
    return result;
}

AAX_Result DescribeEffect(AAX_IEffectDescriptor& outDescriptor, CVst2Plugin& inPlugin)
{
    const char* const name = inPlugin.GetName();
    AAX_Result result = outDescriptor.AddName(name);
    result |= outDescriptor.AddCategory(CategoryOf(inPlugin));
    const SInstanceFactories factories = ProductInstanceFactories();
    AAX_SInstrumentSetupInfo info = SetupInfoOf(inPlugin, name);
    if (factories.mListComponents == nullptr)
        result |= AAX_CInstrumentParameters::StaticDescribe(&outDescriptor, info);
    else
        result |= DescribeComponents(outDescriptor, info, factories.mListComponents(inPlugin));
    result |= outDescriptor.AddProcPtr(reinterpret_cast<void*>(factories.mMakeParameters),
                                       kAAX_ProcPtrEffectParameters);
    result |= outDescriptor.AddProcPtr(reinterpret_cast<void*>(factories.mMakeEditor), kAAX_ProcPtrEffectGUI);
    return result;
}
} // namespace

SInstanceFactories PlainInstanceFactories() noexcept
{
    return {&AaxAdapter_Parameters::Create, &CAaxEditor::Create, nullptr, nullptr};
}

AAX_Result GetEffectDescriptions(AAX_ICollection* outCollection)
{
    const std::unique_ptr<AAX_IEffectDescriptor> descriptor = outCollection->NewDescriptor();
    if (descriptor == nullptr)
        return kAAX_ErrorNullObject;

    CVst2Host host;
    CVst2Plugin* const plugin = host.LoadPlugin(GetSourcePath());
    if (plugin == nullptr)
        return kAAX_ErrorNullObject;

    AAX_Result result = DescribeEffect(*descriptor, *plugin);
    if (result == kAAX_Success)
        result = outCollection->AddEffect(kEffectID_AaxAdapter, descriptor.get());
    if (result == kAAX_Success)
        RememberDescription(ShapeOf(*plugin));

    // The package is named even where the effect was refused, and what the host says to that changes nothing.
    (void)outCollection->SetManufacturerName(plugin->GetVendor());
    (void)outCollection->AddPackageName(plugin->GetName());
    (void)outCollection->SetPackageVersion(static_cast<std::uint32_t>(plugin->GetVersion()));
    return result;
}
