#include "Tools/inspector/PluginFacts.h"

#include "Interfaces/VST2/AEffect.h"
#include "Source/AAX_SInstrumentSetupInfo.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace
{
using Json = nlohmann::ordered_json;

constexpr std::pair<std::int32_t, const char*> kFlagNames[] = {{effFlagsHasEditor, "hasEditor"},
                                                               {effFlagsCanReplacing, "canReplacing"},
                                                               {effFlagsProgramChunks, "programChunks"},
                                                               {effFlagsIsSynth, "isSynth"},
                                                               {effFlagsNoSoundInStop, "noSoundInStop"}};

Json PortsToJson(const std::vector<SPortFacts>& inPorts)
{
    Json ports = Json::array();
    for (const SPortFacts& port : inPorts)
        ports.push_back({{"label", port.mLabel}, {"channels", port.mChannels}});
    return ports;
}

std::vector<SPortFacts> PortsFromJson(const Json& inPorts)
{
    std::vector<SPortFacts> ports;
    for (const Json& port : inPorts)
        ports.push_back({port.at("label"), port.at("channels")});
    return ports;
}

constexpr std::size_t kMaxOutputPorts = 1 + static_cast<std::size_t>(kMaxAuxOutputStems);

/** Empty when the host hears every output. */
std::string UnheardOutputs(const SPluginFacts& inFacts, bool inPortsFromCounts)
{
    long heard = 0;
    for (std::size_t i = 0; i < std::min(inFacts.mOutputPorts.size(), kMaxOutputPorts); ++i)
        heard += inFacts.mOutputPorts[i].mChannels;
    if (inFacts.mOutputPorts.empty()) // of which the option, or its reason, says all there is to say
        heard = inPortsFromCounts ? 2 * static_cast<long>(kMaxOutputPorts) : inFacts.mOutputs;
    if (heard >= inFacts.mOutputs)
        return {};
    const bool tooMany = inFacts.mOutputPorts.empty() || inFacts.mOutputPorts.size() > kMaxOutputPorts;
    return fmt::format("Of its {} outputs a host hears the first {}: {}.", inFacts.mOutputs, heard,
                       tooMany ? fmt::format("one port and {} auxiliary ones is all that can be described",
                                             kMaxAuxOutputStems)
                               : "it describes no pin of the rest");
}
} // namespace

bool SPluginFacts::IsInstrument() const
{
    return HasFlag(effFlagsIsSynth) || (mMidiAfterOpen && mInputs == 0 && mOutputs > 0);
}

std::vector<std::string> SPluginFacts::FlagNames() const
{
    std::vector<std::string> names;
    for (const auto& [flag, flagName] : kFlagNames)
        if (HasFlag(flag))
            names.emplace_back(flagName);
    return names;
}

std::string SPluginFacts::UniqueIdText() const
{
    const auto number = static_cast<std::uint32_t>(mUniqueId);
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += static_cast<char>(number >> shift);
    const bool readable =
        std::ranges::all_of(text, [](char inByte) { return inByte >= ' ' && inByte <= '~'; });
    return readable ? text : fmt::format("0x{:08X}", number);
}

void to_json(Json& outJson, const SPluginFacts& inFacts)
{
    Json parameters = Json::array();
    for (const SParameterFacts& parameter : inFacts.mParameters)
    {
        parameters.push_back({{"name", parameter.mName},
                              {"value", parameter.mValue},
                              {"display", parameter.mDisplay},
                              {"unit", parameter.mUnit}});
    }
    outJson = Json{{"name", inFacts.mName},
                   {"vendor", inFacts.mVendor},
                   {"product", inFacts.mProduct},
                   {"kind", inFacts.IsInstrument() ? "instrument" : "effect"},
                   {"uniqueId", inFacts.mUniqueId},
                   {"uniqueIdText", inFacts.UniqueIdText()},
                   {"version", inFacts.mVersion},
                   {"interfaceVersion", inFacts.mInterfaceVersion},
                   {"inputs", inFacts.mInputs},
                   {"outputs", inFacts.mOutputs},
                   {"inputPorts", PortsToJson(inFacts.mInputPorts)},
                   {"outputPorts", PortsToJson(inFacts.mOutputPorts)},
                   {"portListCut", inFacts.mPortListCut},
                   {"flags", inFacts.mFlags},
                   {"plugCategory", inFacts.mKind},
                   {"flagNames", inFacts.FlagNames()},
                   {"editor", inFacts.HasFlag(effFlagsHasEditor)},
                   {"chunk", inFacts.HasFlag(effFlagsProgramChunks)},
                   {"latencyWhenLoaded", inFacts.mLatencyWhenLoaded},
                   {"latencyAtStart", inFacts.mLatencyAtStart},
                   {"latencyAfterFirstBlock", inFacts.mLatencyAfterFirstBlock},
                   {"latencyAfterBlocks", inFacts.mLatencyAfterBlocks},
                   {"executables", inFacts.mExecutables},
                   {"processors", inFacts.mProcessors},
                   {"midiBeforeOpen", inFacts.mMidiBeforeOpen},
                   {"midiAfterOpen", inFacts.mMidiAfterOpen},
                   {"sendsMidi", inFacts.mSendsMidi},
                   {"bypasses", inFacts.mBypasses},
                   {"asksTime", inFacts.mAsksTime},
                   {"asksAboutHost", inFacts.mAsksAboutHost},
                   {"asksIdle", inFacts.mAsksIdle},
                   {"describesParameters", inFacts.mDescribesParameters},
                   {"parameters", parameters},
                   {"programs", inFacts.mPrograms}};
}

void from_json(const Json& inJson, SPluginFacts& outFacts)
{
    inJson.at("name").get_to(outFacts.mName);
    inJson.at("vendor").get_to(outFacts.mVendor);
    inJson.at("product").get_to(outFacts.mProduct);
    inJson.at("uniqueId").get_to(outFacts.mUniqueId);
    inJson.at("version").get_to(outFacts.mVersion);
    inJson.at("interfaceVersion").get_to(outFacts.mInterfaceVersion);
    inJson.at("inputs").get_to(outFacts.mInputs);
    inJson.at("outputs").get_to(outFacts.mOutputs);
    outFacts.mInputPorts = PortsFromJson(inJson.at("inputPorts"));
    outFacts.mOutputPorts = PortsFromJson(inJson.at("outputPorts"));
    inJson.at("portListCut").get_to(outFacts.mPortListCut);
    inJson.at("flags").get_to(outFacts.mFlags);
    inJson.at("plugCategory").get_to(outFacts.mKind);
    inJson.at("latencyWhenLoaded").get_to(outFacts.mLatencyWhenLoaded);
    inJson.at("latencyAtStart").get_to(outFacts.mLatencyAtStart);
    inJson.at("latencyAfterFirstBlock").get_to(outFacts.mLatencyAfterFirstBlock);
    inJson.at("latencyAfterBlocks").get_to(outFacts.mLatencyAfterBlocks);
    inJson.at("executables").get_to(outFacts.mExecutables);
    inJson.at("processors").get_to(outFacts.mProcessors);
    inJson.at("midiBeforeOpen").get_to(outFacts.mMidiBeforeOpen);
    inJson.at("midiAfterOpen").get_to(outFacts.mMidiAfterOpen);
    inJson.at("sendsMidi").get_to(outFacts.mSendsMidi);
    inJson.at("bypasses").get_to(outFacts.mBypasses);
    inJson.at("asksTime").get_to(outFacts.mAsksTime);
    inJson.at("asksAboutHost").get_to(outFacts.mAsksAboutHost);
    inJson.at("asksIdle").get_to(outFacts.mAsksIdle);
    inJson.at("describesParameters").get_to(outFacts.mDescribesParameters);
    inJson.at("programs").get_to(outFacts.mPrograms);
    outFacts.mParameters.clear();
    for (const Json& parameter : inJson.at("parameters"))
    {
        // A value that is no number travels as null.
        const Json& value = parameter.at("value");
        outFacts.mParameters.push_back({parameter.at("name"), parameter.at("unit"), parameter.at("display"),
                                        value.is_number() ? value.get<float>() : 0.0F});
    }
}

std::vector<std::string> WarningsOf(const SPluginFacts& inFacts, bool inPortsFromCounts, bool inLatency)
{
    std::vector<std::string> warnings;
    if (std::string unheard = UnheardOutputs(inFacts, inPortsFromCounts); !unheard.empty())
        warnings.push_back(std::move(unheard));
    if (!inLatency && inFacts.mLatencyAfterBlocks != inFacts.mLatencyAtStart)
    {
        warnings.push_back(fmt::format(
            "Its latency is {} samples when it is opened and {} when it has rendered "
            "some blocks; a host is told the first only, unless the product has the feature LATENCY.",
            inFacts.mLatencyAtStart, inFacts.mLatencyAfterBlocks));
    }
    if (inFacts.mExecutables > 1)
    {
        warnings.push_back(fmt::format("It has {} executables of which one is loaded, the first by its name.",
                                       inFacts.mExecutables));
    }
    return warnings;
}
