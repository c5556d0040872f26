#include "Tools/aaxhost/host/HostNames.h"

#include "Tools/aaxhost/host/HostDescription.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Interfaces/ACF/ACFInterfaces.h"
#include "Tools/aaxhost/host/CHostAutomation.h"

#include <fmt/format.h>

namespace
{
struct SUidName
{
    const acfUID& mId;
    const char* mName;
};

constexpr SUidName kUidNames[] = {
    {IID_IACFUnknown, "IID_IACFUnknown"},
    {IID_IACFClassFactory, "IID_IACFClassFactory"},
    {IID_IACFDefinition, "IID_IACFDefinition"},
    {IID_IACFPluginDefinition, "IID_IACFPluginDefinition"},
    {IID_IACFComponentDefinition, "IID_IACFComponentDefinition"},
    {IID_IACFEnumDefinitions, "IID_IACFEnumDefinitions"},
    {IID_IACFComponentFactory, "IID_IACFComponentFactory"},
    {AAXCompID_HostServices, "AAXCompID_HostServices"},
    {IID_IAAXHostServicesV1, "IID_IAAXHostServicesV1"},
    {AAXCompID_AAXCollection, "AAXCompID_AAXCollection"},
    {IID_IAAXCollectionV1, "IID_IAAXCollectionV1"},
    {AAXCompID_AAXEffectDescriptor, "AAXCompID_AAXEffectDescriptor"},
    {IID_IAAXEffectDescriptorV1, "IID_IAAXEffectDescriptorV1"},
    {AAXCompID_AAXComponentDescriptor, "AAXCompID_AAXComponentDescriptor"},
    {IID_IAAXComponentDescriptorV1, "IID_IAAXComponentDescriptorV1"},
    {AAXCompID_AAXPropertyMap, "AAXCompID_AAXPropertyMap"},
    {IID_IAAXPropertyMapV1, "IID_IAAXPropertyMapV1"},
    {IID_IAAXAutomationDelegateV1, "IID_IAAXAutomationDelegateV1"},
    {IID_IAAXControllerV1, "IID_IAAXControllerV1"},
    {IID_IAAXControllerV2, "IID_IAAXControllerV2"},
    {IID_IAAXViewContainerV1, "IID_IAAXViewContainerV1"},
    {IID_IAAXTransportV1, "IID_IAAXTransportV1"},
    {IID_IAAXTransportV2, "IID_IAAXTransportV2"},
    {IID_IAAXEffectParametersV1, "IID_IAAXEffectParametersV1"},
    {IID_IAAXEffectParametersV2, "IID_IAAXEffectParametersV2"},
    {IID_IAAXEffectGUIV1, "IID_IAAXEffectGUIV1"},
};

const char* MeaningOfResult(AAX_Result inResult)
{
    switch (inResult)
    {
    case kAAX_Success: return "success";
    case kAAX_ErrorUnknownParameter: return "unknown parameter";
    case kAAX_ErrorTextNotConvertible: return "text not convertible";
    case kAAX_ErrorNullObject: return "a needed object or interface is missing";
    case kAAX_ErrorChunkIndex: return "chunk index out of range";
    case kAAX_ErrorUnknownChunk: return "unknown chunk";
    case kAAX_ErrorChunkSize: return "chunk size changed";
    case kAAX_ErrorUnsupported: return "not supported";
    case kAAX_ErrorNullArgument: return "null argument";
    case ACF_E_NOTIMPL: return "not implemented";
    case ACF_E_NOINTERFACE: return "no such interface";
    case ACF_E_POINTER: return "null pointer";
    case ACF_E_INVALIDARG: return "invalid argument";
    case ACF_E_UNEXPECTED: return "unexpected failure inside the module";
    default: return "no known result code";
    }
}
} // namespace

std::string NameOfUid(const acfUID& inId)
{
    for (const SUidName& row : kUidNames)
        if (row.mId == inId)
            return row.mName;
    const std::uint8_t* tail = inId.Data4;
    return fmt::format("{:08X}-{:04X}-{:04X}-{:02X}{:02X}-{:02X}{:02X}{:02X}{:02X}{:02X}{:02X}", inId.Data1,
                       inId.Data2, inId.Data3, tail[0], tail[1], tail[2], tail[3], tail[4], tail[5], tail[6],
                       tail[7]);
}

std::string NameOfResult(AAX_Result inResult)
{
    // The results of the component model are bit patterns, those of the host interface are decimal numbers.
    if (inResult < -0x100000)
        return fmt::format("0x{:08X} ({})", static_cast<std::uint32_t>(inResult), MeaningOfResult(inResult));
    return fmt::format("{} ({})", inResult, MeaningOfResult(inResult));
}

std::string NameOfStems(const SMainStems& inStems)
{
    const std::string input = NameOfStemFormat(inStems.mInput);
    const std::string output = NameOfStemFormat(inStems.mOutput);
    return input == output ? input : input + "-" + output;
}

std::string NameOfStemFormat(std::int32_t inFormat)
{
    switch (inFormat)
    {
    case AAX_eStemFormat_Mono: return "mono";
    case AAX_eStemFormat_Stereo: return "stereo";
    case AAX_eStemFormat_None: return "none";
    default:
        return fmt::format("0x{:08X} ({} channels)", static_cast<std::uint32_t>(inFormat),
                           AAX_StemChannelCount(inFormat));
    }
}

std::string NameOfFourCharCode(AAX_CTypeID inCode)
{
    std::string text = "'";
    for (int shift = 24; shift >= 0; shift -= 8)
    {
        const char character = static_cast<char>(inCode >> shift & 0xFF);
        if (character < ' ' || character > '~')
            return fmt::format("0x{:08X}", inCode);
        text += character;
    }
    return text + "'";
}

std::string NameOfMidiNodeType(std::int32_t inType)
{
    switch (inType)
    {
    case AAX_eMIDINodeType_LocalInput: return "local input";
    case AAX_eMIDINodeType_LocalOutput: return "local output";
    case AAX_eMIDINodeType_Global: return "global";
    case AAX_eMIDINodeType_Transport: return "transport";
    default: return fmt::format("type {}", inType);
    }
}

std::string_view NameOfProperty(AAX_EProperty inProperty)
{
    switch (inProperty)
    {
    case kAAX_PropertyManufacturerID: return "manufacturer id";
    case kAAX_PropertyProductID: return "product id";
    case kAAX_PropertyPluginID: return "plug-in id";
    case kAAX_PropertyInputStemFormat: return "input stem format";
    case kAAX_PropertyOutputStemFormat: return "output stem format";
    case kAAX_PropertyCanBypass: return "can bypass";
    default: return {};
    }
}

const char* NameOfAnswers(EAnswers inAnswers) noexcept
{
    switch (inAnswers)
    {
    case EAnswers::AtOnce: return "at-once";
    case EAnswers::Late: return "late";
    case EAnswers::Last: return "last";
    }
    return "";
}

std::string Quoted(const char* inText)
{
    if (inText == nullptr)
        return "null";
    std::string text = "\"";
    for (const char* at = inText; *at != '\0'; ++at)
        if (static_cast<unsigned char>(*at) < ' ' || *at == '\x7F')
            text += fmt::format("\\x{:02X}", static_cast<unsigned char>(*at));
        else if (*at == '"' || *at == '\\')
            text.append("\\").push_back(*at);
        else
            text += *at;
    return text + "\"";
}
