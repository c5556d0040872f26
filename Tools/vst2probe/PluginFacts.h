#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

/** A port as the module will see it; without pins there are none. */
struct SPortFacts
{
    std::string label;
    long channels = 0; // 1 or 2
};

struct SParameterFacts
{
    std::string name;
    std::string unit;
    std::string display; // of the value
    float value = 0.0F;
};

/** What a plug-in said of itself from the entry function to its first block. Texts are valid UTF-8. */
struct SPluginFacts
{
    std::string name;
    std::string vendor;
    std::string product;
    std::int32_t uniqueId = 0;
    std::int32_t version = 0;
    std::int32_t interfaceVersion = 0; // of VST 2: 2400 and its like
    std::int32_t inputs = 0;           // channels
    std::int32_t outputs = 0;
    std::vector<SPortFacts> inputPorts;
    std::vector<SPortFacts> outputPorts;
    bool portListCut = false; // a pin that names a speaker ended the list
    std::vector<SParameterFacts> parameters;
    std::vector<std::string> programs;
    std::int32_t flags = 0;             // VstAEffectFlags
    std::int32_t latencyWhenLoaded = 0; // samples
    std::int32_t latencyAtStart = 0;    // opened and switched on
    std::int32_t latencyAfterFirstBlock = 0;
    std::int32_t latencyAfterBlocks = 0; // some
    std::int32_t executables = 0;        // 0: not known
    bool midiBeforeOpen = false;
    bool midiAfterOpen = false;
    bool sendsMidi = false; // says that it can
    // What it asked its host for until its last block.
    bool asksTime = false;
    bool asksAboutHost = false; // rate, block size, abilities and the like
    bool asksIdle = false;

    bool HasFlag(std::int32_t inFlag) const { return (flags & inFlag) != 0; }
    /** Whether it is played: it calls itself a synthesizer, or makes sound of MIDI alone. */
    bool IsInstrument() const;
    std::vector<std::string> FlagNames() const;
    /** @return the four characters that the unique identifier spells, or its number in hexadecimal digits. */
    std::string UniqueIdText() const;
};

void to_json(nlohmann::ordered_json& outJson, const SPluginFacts& inFacts);
/** Throws nlohmann's exceptions when something is missing or of another type. */
void from_json(const nlohmann::ordered_json& inJson, SPluginFacts& outFacts);

/**
 * @param inPortsFromCounts whether the product has this option.
 * @param inLatency         whether it has this feature.
 * @return what of a plug-in a host will not get or will not learn, a sentence each.
 */
std::vector<std::string> WarningsOf(const SPluginFacts& inFacts, bool inPortsFromCounts, bool inLatency);
