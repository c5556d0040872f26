#include "Tools/aaxhost/host/CHostComponentDescriptor.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Tools/aaxhost/host/CHostPropertyMap.h"

#include <fmt/format.h>

namespace
{
std::string TextOf(const char* inText) { return inText != nullptr ? inText : ""; }

SField MakeField(AAX_CFieldIndex inIndex, EFieldKind inKind)
{
    SField field;
    field.mIndex = inIndex;
    field.mKind = inKind;
    return field;
}

/** A callback's address says nothing to a reader of the log, but whether there is one does. */
const char* Presence(bool inPresent) { return inPresent ? "proc" : "null"; }
} // namespace

CHostComponentDescriptor::CHostComponentDescriptor(CHostLog& inLog)
    : CCountedObject(inLog, {IID_IAAXComponentDescriptorV1})
{
}

AAX_Result CHostComponentDescriptor::AddField(const char* inName, const std::string& inArguments,
                                              SField inField)
{
    if (const AAX_Result fault = mLog.Record(inName, inArguments))
        return fault;
    if (inField.mIndex >= kMaxFields)
        return ACF_E_INVALIDARG;
    mComponent.mFields.push_back(std::move(inField));
    return kAAX_Success;
}

AAX_Result CHostComponentDescriptor::Clear()
{
    if (const AAX_Result fault = mLog.Record("Clear", {}))
        return fault;
    mComponent = {};
    return kAAX_Success;
}

AAX_Result CHostComponentDescriptor::AddReservedField(AAX_CFieldIndex field, std::uint32_t type)
{
    SField entry = MakeField(field, EFieldKind::Reserved);
    entry.mType = static_cast<std::int32_t>(type);
    return AddField("AddReservedField", fmt::format("{}, {}", field, type), std::move(entry));
}

AAX_Result CHostComponentDescriptor::AddAudioIn(AAX_CFieldIndex field)
{
    return AddField("AddAudioIn", std::to_string(field), MakeField(field, EFieldKind::AudioIn));
}

AAX_Result CHostComponentDescriptor::AddAudioOut(AAX_CFieldIndex field)
{
    return AddField("AddAudioOut", std::to_string(field), MakeField(field, EFieldKind::AudioOut));
}

AAX_Result CHostComponentDescriptor::AddAudioBufferLength(AAX_CFieldIndex field)
{
    return AddField("AddAudioBufferLength", std::to_string(field),
                    MakeField(field, EFieldKind::AudioBufferLength));
}

AAX_Result CHostComponentDescriptor::AddSampleRate(AAX_CFieldIndex field)
{
    return AddField("AddSampleRate", std::to_string(field), MakeField(field, EFieldKind::SampleRate));
}

AAX_Result CHostComponentDescriptor::AddClock(AAX_CFieldIndex field)
{
    return AddField("AddClock", std::to_string(field), MakeField(field, EFieldKind::Clock));
}

AAX_Result CHostComponentDescriptor::AddSideChainIn(AAX_CFieldIndex field)
{
    return AddField("AddSideChainIn", std::to_string(field), MakeField(field, EFieldKind::SideChainIn));
}

AAX_Result CHostComponentDescriptor::AddDataInPort(AAX_CFieldIndex field, std::uint32_t size,
                                                   std::int32_t type)
{
    SField entry = MakeField(field, EFieldKind::DataInPort);
    entry.mSize = size;
    entry.mType = type;
    return AddField("AddDataInPort", fmt::format("{}, {}, {}", field, size, type), std::move(entry));
}

AAX_Result CHostComponentDescriptor::AddAuxOutputStem(AAX_CFieldIndex field, std::int32_t stemFormat,
                                                      const char* name)
{
    if (const AAX_Result fault = mLog.Record(
            "AddAuxOutputStem", fmt::format("{}, {}, {}", field, NameOfStemFormat(stemFormat), Quoted(name))))
        return fault;
    mComponent.mAuxStems.push_back({field, stemFormat, TextOf(name)});
    return kAAX_Success;
}

AAX_Result CHostComponentDescriptor::AddPrivateData(AAX_CFieldIndex field, std::int32_t size,
                                                    std::uint32_t options)
{
    const std::string arguments = fmt::format("{}, {}, {}", field, size, options);
    if (size < 0)
    {
        (void)mLog.Record("AddPrivateData", arguments); // refused whatever was injected
        return ACF_E_INVALIDARG;
    }
    SField entry = MakeField(field, EFieldKind::PrivateData);
    entry.mSize = static_cast<std::uint32_t>(size);
    entry.mOptions = options;
    return AddField("AddPrivateData", arguments, std::move(entry));
}

AAX_Result CHostComponentDescriptor::AddDmaInstance(AAX_CFieldIndex field, std::int32_t mode)
{
    SField entry = MakeField(field, EFieldKind::DmaInstance);
    entry.mType = mode;
    return AddField("AddDmaInstance", fmt::format("{}, {}", field, mode), std::move(entry));
}

AAX_Result CHostComponentDescriptor::AddMIDINode(AAX_CFieldIndex field, AAX_EMIDINodeType type,
                                                 const char* name, std::uint32_t channelMask)
{
    SField entry = MakeField(field, EFieldKind::MidiNode);
    entry.mNodeType = type;
    entry.mName = TextOf(name);
    entry.mMask = channelMask;
    return AddField(
        "AddMIDINode",
        fmt::format("{}, {}, {}, 0x{:04X}", field, NameOfMidiNodeType(type), Quoted(name), channelMask),
        std::move(entry));
}

AAX_Result CHostComponentDescriptor::AddProcessProc_Native(AAX_CProcessProc process, IACFUnknown* propertyMap,
                                                           AAX_CInstanceInitProc instanceInit,
                                                           AAX_CBackgroundProc background,
                                                           AAX_CSelector* outID)
{
    SProcessProc proc{process, instanceInit, background, {}};
    const bool knownMap = CopyProperties(propertyMap, proc.mProperties);
    if (const AAX_Result fault =
            mLog.Record("AddProcessProc_Native",
                        fmt::format("{}, {}, {}, {}", Presence(process != nullptr),
                                    propertyMap == nullptr ? "null" : "properties",
                                    Presence(instanceInit != nullptr), Presence(background != nullptr))))
        return fault;
    if (process == nullptr || !knownMap)
        return ACF_E_INVALIDARG;
    mComponent.mProcs.push_back(std::move(proc));
    if (outID != nullptr)
        *outID = static_cast<AAX_CSelector>(mComponent.mProcs.size());
    return kAAX_Success;
}

AAX_Result CHostComponentDescriptor::AddProcessProc_TI(const char* dllName, const char* processName,
                                                       IACFUnknown*, const char*, const char*, AAX_CSelector*)
{
    const AAX_Result fault =
        mLog.Record("AddProcessProc_TI", fmt::format("{}, {}", Quoted(dllName), Quoted(processName)));
    return fault != kAAX_Success ? fault : kAAX_ErrorUnsupported; // this host has no signal processors
}

AAX_Result CHostComponentDescriptor::AddMeters(AAX_CFieldIndex field, const AAX_CTypeID* meterIDs,
                                               std::uint32_t count)
{
    SField entry = MakeField(field, EFieldKind::Meters);
    std::string arguments = std::to_string(field);
    for (std::uint32_t i = 0; meterIDs != nullptr && i < count; ++i)
    {
        entry.mMeterIDs.push_back(meterIDs[i]);
        arguments += ", " + NameOfFourCharCode(meterIDs[i]);
    }
    return AddField("AddMeters", arguments, std::move(entry));
}
