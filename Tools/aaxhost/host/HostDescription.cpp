#include "Tools/aaxhost/host/HostDescription.h"

#include <algorithm>

const char* NameOfFieldKind(EFieldKind inKind) noexcept
{
    switch (inKind)
    {
    case EFieldKind::Reserved: return "reserved";
    case EFieldKind::AudioIn: return "audio in";
    case EFieldKind::AudioOut: return "audio out";
    case EFieldKind::AudioBufferLength: return "buffer length";
    case EFieldKind::SampleRate: return "sample rate";
    case EFieldKind::Clock: return "clock";
    case EFieldKind::SideChainIn: return "side chain in";
    case EFieldKind::DataInPort: return "data in port";
    case EFieldKind::PrivateData: return "private data";
    case EFieldKind::DmaInstance: return "DMA instance";
    case EFieldKind::MidiNode: return "MIDI node";
    case EFieldKind::Meters: return "meters";
    }
    return "unknown";
}

std::optional<AAX_CPropertyValue> FindProperty(const PropertyList& inProperties, AAX_EProperty inProperty)
{
    const auto found = std::find_if(inProperties.begin(), inProperties.end(),
                                    [=](const SProperty& entry) { return entry.mProperty == inProperty; });
    if (found == inProperties.end())
        return std::nullopt;
    return found->mValue;
}

void* FindProcPtr(const SEffect& inEffect, AAX_CProcPtrID inID)
{
    const auto found = std::find_if(inEffect.mProcPtrs.begin(), inEffect.mProcPtrs.end(),
                                    [=](const SProcPtr& entry) { return entry.mID == inID; });
    return found == inEffect.mProcPtrs.end() ? nullptr : found->mProc;
}

SMainStems MainStemsOf(const SComponent& inComponent)
{
    if (inComponent.mProcs.empty())
        return {};
    const PropertyList& properties = inComponent.mProcs.front().mProperties;
    return {FindProperty(properties, kAAX_PropertyInputStemFormat).value_or(AAX_eStemFormat_None),
            FindProperty(properties, kAAX_PropertyOutputStemFormat).value_or(AAX_eStemFormat_None)};
}
