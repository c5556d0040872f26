#include "Tools/aaxhost/DescriptionReport.h"

#include "Tools/aaxhost/host/HostNames.h"

#include <bit>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <iterator>
#include <nlohmann/json.hpp>

namespace
{
using Json = nlohmann::ordered_json;
using Text = std::back_insert_iterator<std::string>;

std::string NameOfCategory(std::uint32_t inCategory)
{
    // By bit.
    constexpr const char* kNames[] = {"EQ",
                                      "dynamics",
                                      "pitch shift",
                                      "reverb",
                                      "delay",
                                      "modulation",
                                      "harmonic",
                                      "noise reduction",
                                      "dither",
                                      "sound field",
                                      "hardware generator",
                                      "software instrument",
                                      "wrapped plug-in",
                                      "effect"};
    const bool isOne = std::has_single_bit(inCategory);
    const auto bit = static_cast<std::size_t>(std::countr_zero(inCategory));
    return isOne && bit < std::size(kNames) ? kNames[bit] : fmt::format("0x{:X}", inCategory);
}

std::string NameOfProcPtr(AAX_CProcPtrID inID)
{
    switch (inID)
    {
    case kAAX_ProcPtrEffectParameters: return "effect parameters";
    case kAAX_ProcPtrEffectGUI: return "editor";
    default: return fmt::format("procedure {}", inID);
    }
}

std::string PropertyText(const SProperty& inProperty)
{
    switch (inProperty.mProperty)
    {
    case kAAX_PropertyManufacturerID:
    case kAAX_PropertyProductID:
    case kAAX_PropertyPluginID: return NameOfFourCharCode(static_cast<AAX_CTypeID>(inProperty.mValue));
    case kAAX_PropertyInputStemFormat:
    case kAAX_PropertyOutputStemFormat: return NameOfStemFormat(inProperty.mValue);
    default: return std::to_string(inProperty.mValue);
    }
}

std::string FieldText(const SField& inField)
{
    switch (inField.mKind)
    {
    case EFieldKind::PrivateData: return fmt::format("private data, {} bytes", inField.mSize);
    case EFieldKind::DataInPort: return fmt::format("data in port, {} bytes", inField.mSize);
    case EFieldKind::MidiNode:
        return fmt::format("MIDI node, {}, {}, mask 0x{:04X}", NameOfMidiNodeType(inField.mNodeType),
                           Quoted(inField.mName.c_str()), inField.mMask);
    case EFieldKind::Meters: return fmt::format("{} meters", inField.mMeterIDs.size());
    default: return NameOfFieldKind(inField.mKind);
    }
}

void AppendProperties(Text out, const PropertyList& inProperties)
{
    for (const SProperty& entry : inProperties)
        fmt::format_to(out, "      property {:3} {:20} {}\n", entry.mProperty,
                       NameOfProperty(entry.mProperty), PropertyText(entry));
}

void AppendComponent(Text out, const SComponent& inComponent)
{
    fmt::format_to(out, "  Component\n");
    for (const SField& field : inComponent.mFields)
        fmt::format_to(out, "    field {:2}  {}\n", field.mIndex, FieldText(field));
    for (const SAuxStem& stem : inComponent.mAuxStems)
        fmt::format_to(out, "    auxiliary output stem  {}, {}\n", NameOfStemFormat(stem.mFormat),
                       Quoted(stem.mName.c_str()));
    for (const SProcessProc& proc : inComponent.mProcs)
    {
        fmt::format_to(out, "    render procedure\n");
        AppendProperties(out, proc.mProperties);
    }
}

void AppendEffect(Text out, const SEffect& inEffect)
{
    fmt::format_to(out, "Effect {}\n", Quoted(inEffect.mID.c_str()));
    for (const std::string& name : inEffect.mNames)
        fmt::format_to(out, "  Name {}\n", Quoted(name.c_str()));
    for (const std::uint32_t category : inEffect.mCategories)
        fmt::format_to(out, "  Category {}\n", NameOfCategory(category));
    for (const SComponent& component : inEffect.mComponents)
        AppendComponent(out, component);
    for (const SProcPtr& proc : inEffect.mProcPtrs)
        fmt::format_to(out, "  Factory {} {}\n", NameOfProcPtr(proc.mID),
                       proc.mProc != nullptr ? "present" : "null");
    AppendProperties(out, inEffect.mProperties);
}

Json PropertiesJson(const PropertyList& inProperties)
{
    Json list = Json::array();
    for (const SProperty& entry : inProperties)
        list.push_back({{"property", entry.mProperty},
                        {"name", NameOfProperty(entry.mProperty)},
                        {"value", entry.mValue},
                        {"text", PropertyText(entry)}});
    return list;
}

Json FieldJson(const SField& inField)
{
    Json field = {{"index", inField.mIndex}, {"kind", NameOfFieldKind(inField.mKind)}};
    if (inField.mKind == EFieldKind::PrivateData || inField.mKind == EFieldKind::DataInPort)
        field["bytes"] = inField.mSize;
    if (inField.mKind == EFieldKind::PrivateData)
        field["options"] = inField.mOptions;
    if (inField.mKind == EFieldKind::MidiNode)
    {
        field["node"] = NameOfMidiNodeType(inField.mNodeType);
        field["name"] = inField.mName;
        field["mask"] = inField.mMask;
    }
    if (inField.mKind == EFieldKind::Meters)
        field["meters"] = inField.mMeterIDs;
    return field;
}

Json ComponentJson(const SComponent& inComponent)
{
    Json fields = Json::array();
    for (const SField& field : inComponent.mFields)
        fields.push_back(FieldJson(field));
    Json stems = Json::array();
    for (const SAuxStem& stem : inComponent.mAuxStems)
        stems.push_back({{"field", stem.mIndex},
                         {"format", stem.mFormat},
                         {"text", NameOfStemFormat(stem.mFormat)},
                         {"name", stem.mName}});
    Json procs = Json::array();
    for (const SProcessProc& proc : inComponent.mProcs)
        procs.push_back({{"instanceInit", proc.mInstanceInit != nullptr},
                         {"background", proc.mBackground != nullptr},
                         {"properties", PropertiesJson(proc.mProperties)}});
    return {{"fields", fields}, {"auxiliaryStems", stems}, {"renderProcedures", procs}};
}

Json EffectJson(const SEffect& inEffect)
{
    Json components = Json::array();
    for (const SComponent& component : inEffect.mComponents)
        components.push_back(ComponentJson(component));
    Json factories = Json::array();
    for (const SProcPtr& proc : inEffect.mProcPtrs)
        factories.push_back(
            {{"id", proc.mID}, {"name", NameOfProcPtr(proc.mID)}, {"present", proc.mProc != nullptr}});
    return {{"id", inEffect.mID},
            {"names", inEffect.mNames},
            {"categories", inEffect.mCategories},
            {"components", components},
            {"factories", factories},
            {"properties", PropertiesJson(inEffect.mProperties)}};
}

Json ParameterJson(const SParameterInfo& inParameter)
{
    return {{"id", inParameter.mID},
            {"name", inParameter.mName},
            {"shortName", inParameter.mShortName},
            {"default", inParameter.mDefault},
            {"value", inParameter.mValue},
            {"text", inParameter.mValueText},
            {"steps", inParameter.mSteps},
            {"discrete", inParameter.mDiscrete},
            {"automatable", inParameter.mAutomatable}};
}
} // namespace

std::string ReportAsText(const SModuleReport& inReport)
{
    const SDescription& description = inReport.mDescription;
    std::string text;
    const Text out(text);
    fmt::format_to(out, "Module {}\n", inReport.mPath);
    fmt::format_to(out, "Built for interface version 0x{:016X}\n", inReport.mInterfaceVersion);
    fmt::format_to(out, "Manufacturer {}\n", Quoted(description.mManufacturerName.c_str()));
    for (const std::string& name : description.mPackageNames)
        fmt::format_to(out, "Package {}\n", Quoted(name.c_str()));
    fmt::format_to(out, "Package version {}\n", description.mPackageVersion);
    AppendProperties(out, description.mProperties);
    for (const SEffect& effect : description.mEffects)
        AppendEffect(out, effect);

    fmt::format_to(out, "Instance\n  {} input channels, {} output channels, latency {} samples\n",
                   inReport.mInputChannels, inReport.mOutputChannels, inReport.mLatency);
    fmt::format_to(out, "  {} parameters\n", inReport.mParameters.size());
    for (const SParameterInfo& parameter : inReport.mParameters)
        fmt::format_to(out, "    {:16} {:28} short {:10} default {:.6g}, value {:.6g} ({}), {} {}steps{}\n",
                       parameter.mID, Quoted(parameter.mName.c_str()), Quoted(parameter.mShortName.c_str()),
                       parameter.mDefault, parameter.mValue, Quoted(parameter.mValueText.c_str()),
                       parameter.mSteps, parameter.mDiscrete ? "discrete " : "",
                       parameter.mAutomatable ? ", automatable" : "");
    fmt::format_to(out, "Calls\n  {}\n", fmt::join(inReport.mCalls, "\n  "));
    return text;
}

std::string ReportAsJson(const SModuleReport& inReport)
{
    const SDescription& description = inReport.mDescription;
    Json effects = Json::array();
    for (const SEffect& effect : description.mEffects)
        effects.push_back(EffectJson(effect));
    Json parameters = Json::array();
    for (const SParameterInfo& parameter : inReport.mParameters)
        parameters.push_back(ParameterJson(parameter));
    const Json report = {{"module", inReport.mPath},
                         {"interfaceVersion", inReport.mInterfaceVersion},
                         {"manufacturer", description.mManufacturerName},
                         {"packageNames", description.mPackageNames},
                         {"packageVersion", description.mPackageVersion},
                         {"properties", PropertiesJson(description.mProperties)},
                         {"effects", effects},
                         {"instance",
                          {{"inputChannels", inReport.mInputChannels},
                           {"outputChannels", inReport.mOutputChannels},
                           {"latency", inReport.mLatency},
                           {"parameters", parameters}}},
                         {"calls", inReport.mCalls}};
    return report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}
