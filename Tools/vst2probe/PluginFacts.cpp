#include "Tools/vst2probe/PluginFacts.h"

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
        ports.push_back({{"label", port.label}, {"channels", port.channels}});
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
    for (std::size_t i = 0; i < std::min(inFacts.outputPorts.size(), kMaxOutputPorts); ++i)
        heard += inFacts.outputPorts[i].channels;
    if (inFacts.outputPorts.empty()) // of which the option, or its reason, says all there is to say
        heard = inPortsFromCounts ? 2 * static_cast<long>(kMaxOutputPorts) : inFacts.outputs;
    if (heard >= inFacts.outputs)
        return {};
    const bool tooMany = inFacts.outputPorts.empty() || inFacts.outputPorts.size() > kMaxOutputPorts;
    return fmt::format("Of its {} outputs a host hears the first {}: {}.", inFacts.outputs, heard,
                       tooMany ? fmt::format("one port and {} auxiliary ones is all that can be described",
                                             kMaxAuxOutputStems)
                               : "it describes no pin of the rest");
}
} // namespace

bool SPluginFacts::IsInstrument() const
{
    return HasFlag(effFlagsIsSynth) || (midiAfterOpen && inputs == 0 && outputs > 0);
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
    const auto number = static_cast<std::uint32_t>(uniqueId);
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
    for (const SParameterFacts& parameter : inFacts.parameters)
    {
        parameters.push_back({{"name", parameter.name},
                              {"value", parameter.value},
                              {"display", parameter.display},
                              {"unit", parameter.unit}});
    }
    outJson = Json{{"name", inFacts.name},
                   {"vendor", inFacts.vendor},
                   {"product", inFacts.product},
                   {"kind", inFacts.IsInstrument() ? "instrument" : "effect"},
                   {"uniqueId", inFacts.uniqueId},
                   {"uniqueIdText", inFacts.UniqueIdText()},
                   {"version", inFacts.version},
                   {"interfaceVersion", inFacts.interfaceVersion},
                   {"inputs", inFacts.inputs},
                   {"outputs", inFacts.outputs},
                   {"inputPorts", PortsToJson(inFacts.inputPorts)},
                   {"outputPorts", PortsToJson(inFacts.outputPorts)},
                   {"portListCut", inFacts.portListCut},
                   {"flags", inFacts.flags},
                   {"flagNames", inFacts.FlagNames()},
                   {"editor", inFacts.HasFlag(effFlagsHasEditor)},
                   {"chunk", inFacts.HasFlag(effFlagsProgramChunks)},
                   {"latencyWhenLoaded", inFacts.latencyWhenLoaded},
                   {"latencyAtStart", inFacts.latencyAtStart},
                   {"latencyAfterFirstBlock", inFacts.latencyAfterFirstBlock},
                   {"latencyAfterBlocks", inFacts.latencyAfterBlocks},
                   {"executables", inFacts.executables},
                   {"midiBeforeOpen", inFacts.midiBeforeOpen},
                   {"midiAfterOpen", inFacts.midiAfterOpen},
                   {"sendsMidi", inFacts.sendsMidi},
                   {"asksTime", inFacts.asksTime},
                   {"asksAboutHost", inFacts.asksAboutHost},
                   {"asksIdle", inFacts.asksIdle},
                   {"parameters", parameters},
                   {"programs", inFacts.programs}};
}

void from_json(const Json& inJson, SPluginFacts& outFacts)
{
    inJson.at("name").get_to(outFacts.name);
    inJson.at("vendor").get_to(outFacts.vendor);
    inJson.at("product").get_to(outFacts.product);
    inJson.at("uniqueId").get_to(outFacts.uniqueId);
    inJson.at("version").get_to(outFacts.version);
    inJson.at("interfaceVersion").get_to(outFacts.interfaceVersion);
    inJson.at("inputs").get_to(outFacts.inputs);
    inJson.at("outputs").get_to(outFacts.outputs);
    outFacts.inputPorts = PortsFromJson(inJson.at("inputPorts"));
    outFacts.outputPorts = PortsFromJson(inJson.at("outputPorts"));
    inJson.at("portListCut").get_to(outFacts.portListCut);
    inJson.at("flags").get_to(outFacts.flags);
    inJson.at("latencyWhenLoaded").get_to(outFacts.latencyWhenLoaded);
    inJson.at("latencyAtStart").get_to(outFacts.latencyAtStart);
    inJson.at("latencyAfterFirstBlock").get_to(outFacts.latencyAfterFirstBlock);
    inJson.at("latencyAfterBlocks").get_to(outFacts.latencyAfterBlocks);
    inJson.at("executables").get_to(outFacts.executables);
    inJson.at("midiBeforeOpen").get_to(outFacts.midiBeforeOpen);
    inJson.at("midiAfterOpen").get_to(outFacts.midiAfterOpen);
    inJson.at("sendsMidi").get_to(outFacts.sendsMidi);
    inJson.at("asksTime").get_to(outFacts.asksTime);
    inJson.at("asksAboutHost").get_to(outFacts.asksAboutHost);
    inJson.at("asksIdle").get_to(outFacts.asksIdle);
    inJson.at("programs").get_to(outFacts.programs);
    outFacts.parameters.clear();
    for (const Json& parameter : inJson.at("parameters"))
    {
        // A value that is no number travels as null.
        const Json& value = parameter.at("value");
        outFacts.parameters.push_back({parameter.at("name"), parameter.at("unit"), parameter.at("display"),
                                       value.is_number() ? value.get<float>() : 0.0F});
    }
}

std::vector<std::string> WarningsOf(const SPluginFacts& inFacts, bool inPortsFromCounts, bool inLatency)
{
    std::vector<std::string> warnings;
    if (std::string unheard = UnheardOutputs(inFacts, inPortsFromCounts); !unheard.empty())
        warnings.push_back(std::move(unheard));
    if (!inLatency && inFacts.latencyAfterBlocks != inFacts.latencyAtStart)
    {
        warnings.push_back(fmt::format(
            "Its latency is {} samples when it is opened and {} when it has rendered "
            "some blocks; a host is told the first only, unless the product has the feature LATENCY.",
            inFacts.latencyAtStart, inFacts.latencyAfterBlocks));
    }
    if (inFacts.executables > 1)
    {
        warnings.push_back(fmt::format("It has {} executables of which one is loaded, the first by its name.",
                                       inFacts.executables));
    }
    return warnings;
}
