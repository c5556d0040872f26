#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

/** A port as the module will see it; without pins there are none. */
struct SPortFacts
{
    std::string mLabel;
    long mChannels = 0; // 1 or 2
};

struct SParameterFacts
{
    std::string mName;
    std::string mUnit;
    std::string mDisplay; // of the value
    float mValue = 0.0F;
};

/** What a plug-in said of itself from the entry function to its first block. Texts are valid UTF-8. */
struct SPluginFacts
{
    std::string mName;
    std::string mVendor;
    std::string mProduct;
    std::int32_t mUniqueId = 0;
    std::int32_t mVersion = 0;
    std::int32_t mInterfaceVersion = 0; // of VST 2: 2400 and its like
    std::int32_t mInputs = 0;           // channels
    std::int32_t mOutputs = 0;
    std::vector<SPortFacts> mInputPorts;
    std::vector<SPortFacts> mOutputPorts;
    bool mPortListCut = false; // a pin that names a speaker ended the list
    std::vector<SParameterFacts> mParameters;
    bool mDescribesParameters = false; // by their properties, or as not to be automated
    std::vector<std::string> mPrograms;
    std::int32_t mFlags = 0;             // VstAEffectFlags
    std::int32_t mKind = 0;              // as it answers effGetPlugCategory
    std::int32_t mLatencyWhenLoaded = 0; // samples
    std::int32_t mLatencyAtStart = 0;    // opened and switched on
    std::int32_t mLatencyAfterFirstBlock = 0;
    std::int32_t mLatencyAfterBlocks = 0; // some
    std::int32_t mExecutables = 0;        // 0: not known
    std::vector<std::string> mProcessors; // that its file for macOS is for; empty for those of other systems
    bool mMidiBeforeOpen = false;
    bool mMidiAfterOpen = false;
    bool mSendsMidi = false; // says that it can
    bool mBypasses = false;  // as above
    // What it asked its host for until its last block.
    bool mAsksTime = false;
    bool mAsksAboutHost = false; // rate, block size, abilities and the like
    bool mAsksIdle = false;

    bool HasFlag(std::int32_t inFlag) const { return (mFlags & inFlag) != 0; }
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
