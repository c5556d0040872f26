#include "Tools/vst2probe/ProductChoice.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string_view>

#include <fmt/format.h>

namespace
{
bool IsUpper(char inByte) { return inByte >= 'A' && inByte <= 'Z'; }
bool IsLower(char inByte) { return inByte >= 'a' && inByte <= 'z'; }
bool IsLetterOrDigit(char inByte)
{
    return IsUpper(inByte) || IsLower(inByte) || (inByte >= '0' && inByte <= '9');
}
char Lower(char inByte) { return IsUpper(inByte) ? static_cast<char>(inByte - 'A' + 'a') : inByte; }
char Upper(char inByte) { return IsLower(inByte) ? static_cast<char>(inByte - 'a' + 'A') : inByte; }

/** @return the letters and digits of the first text that has any. */
std::string Identifier(std::initializer_list<std::string_view> inTexts)
{
    std::string identifier;
    for (const std::string_view text : inTexts)
    {
        std::ranges::copy_if(text, std::back_inserter(identifier), &IsLetterOrDigit);
        if (!identifier.empty())
        {
            break;
        }
    }
    return identifier;
}

std::string Lowered(std::string inText)
{
    std::ranges::transform(inText, inText.begin(), &Lower);
    return inText;
}

std::string ManufacturerId(const std::string& inVendor)
{
    std::string code = Lowered(Identifier({inVendor, "maker"})).substr(0, 4);
    code.resize(4, 'x');
    code.front() = Upper(code.front());
    return code;
}

SOptionChoice<std::int32_t> ChooseEntryVersion(const SProbeResult& inResult)
{
    if (inResult.entryVersion != 0)
    {
        return {
            inResult.entryVersion,
            fmt::format("It asks for the host's version inside its entry function, and when that is 0 {}.",
                        inResult.refusalOfZero)};
    }
    return {0, inResult.askedVersion
                   ? "It asks for the host's version inside its entry function and takes 0 for an answer."
                   : "It does not ask for the host's version inside its entry function."};
}

SOptionChoice<bool> ChoosePortsFromCounts(const SPluginFacts& inFacts)
{
    const bool noInputs = inFacts.inputs > 0 && inFacts.inputPorts.empty();
    const bool noOutputs = inFacts.outputs > 0 && inFacts.outputPorts.empty();
    if (noInputs || noOutputs)
    {
        const char* const what = noInputs && noOutputs ? "inputs and outputs"
                                 : noInputs            ? "inputs"
                                                       : "outputs";
        return {
            true,
            inFacts.portListCut
                ? fmt::format("A pin that it describes by a speaker ends its list of ports ahead of its {}, "
                              "so it would have no ports there.",
                              what)
                : fmt::format("It describes no pin of its {}, so it would have no ports there.", what)};
    }
    if (inFacts.portListCut)
    {
        return {false, "It describes a pin by a speaker, which ends the list of ports with or without it."};
    }
    return {false, inFacts.inputs + inFacts.outputs > 0 ? "It describes its ports by pins."
                                                        : "It has no audio channels."};
}

SOptionChoice<bool> ChooseMidiInput(const SPluginFacts& inFacts)
{
    if (inFacts.midiBeforeOpen)
    {
        return {false, "It says that it takes MIDI as soon as it is loaded."};
    }
    if (inFacts.midiAfterOpen)
    {
        return {true, "It asks for MIDI only when it is opened, which is too late for the description."};
    }
    return {false, "It never says that it takes MIDI, so none would be sent to it."};
}

/** A value of a CMake call: quoted when it has to be. */
std::string Quoted(const std::string& inText)
{
    if (inText.find_first_of(" ;()#\"\\$\t@^") == std::string::npos)
    {
        return inText;
    }
    std::string quoted = "\"";
    for (const char byte : inText)
    {
        if (byte == '"' || byte == '\\' || byte == '$')
        {
            quoted += '\\';
        }
        quoted += byte;
    }
    return quoted + '"';
}
} // namespace

bool IsProductName(const std::string& inName)
{
    return !inName.empty() &&
           std::ranges::all_of(inName, [](char inByte)
                               { return IsLetterOrDigit(inByte) || inByte == '-' || inByte == '_'; });
}

std::string SProductChoice::CmakeCall() const
{
    std::string call = fmt::format("add_aax_adapter({}\n    SOURCE_VST       {}\n    EFFECT_ID        {}\n"
                                   "    MANUFACTURER_ID  {}",
                                   name, Quoted(sourceVst.string()), effectId, manufacturerId);
    if (entryVersion.value != 0)
    {
        call += fmt::format("\n    ENTRY_VERSION    {}", entryVersion.value);
    }
    call += portsFromCounts.value ? "\n    PORTS_FROM_COUNTS" : "";
    call += midiInput.value ? "\n    MIDI_INPUT" : "";
    return call + ")";
}

std::vector<std::string> SProductChoice::ConfigureArguments() const
{
    const auto onOff = [](bool inOn) { return inOn ? "ON" : "OFF"; };
    return {"-DAAXADAPTER_PRODUCT=" + name,
            "-DAAXADAPTER_SOURCE_VST=" + sourceVst.string(),
            "-DAAXADAPTER_EFFECT_ID=" + effectId,
            "-DAAXADAPTER_MANUFACTURER_ID=" + manufacturerId,
            fmt::format("-DAAXADAPTER_ENTRY_VERSION={}", entryVersion.value),
            fmt::format("-DAAXADAPTER_PORTS_FROM_COUNTS={}", onOff(portsFromCounts.value)),
            fmt::format("-DAAXADAPTER_MIDI_INPUT={}", onOff(midiInput.value))};
}

SProductChoice ChooseProduct(const std::filesystem::path& inPlugin, const SProbeResult& inResult,
                             const std::string& inName)
{
    const SPluginFacts& facts = *inResult.facts;
    const std::string stem = inPlugin.stem().string();
    SProductChoice choice;
    // The plug-in's plain name is often that of a target of the same build.
    choice.name = inName.empty() ? Identifier({facts.name, stem, "Plugin"}) + "Adapter" : inName;
    choice.sourceVst = inPlugin;
    choice.effectId = fmt::format("com.{}.{}", Lowered(Identifier({facts.vendor, "example"})),
                                  Lowered(Identifier({facts.name, stem, "plugin"})));
    choice.manufacturerId = ManufacturerId(facts.vendor);
    choice.entryVersion = ChooseEntryVersion(inResult);
    choice.portsFromCounts = ChoosePortsFromCounts(facts);
    choice.midiInput = ChooseMidiInput(facts);
    return choice;
}
