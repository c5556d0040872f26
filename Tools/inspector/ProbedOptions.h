#pragma once
#include "Tools/inspector/ProbePlugin.h"

#include <cstdint>
#include <map>
#include <span>
#include <string>

/** What a product does best about one of its options, and why, as one sentence. */
struct SOptionChoice
{
    std::int32_t mValue = 0; // of a switch 0 or 1
    std::string mReason;
};

/** An option of a product that depends on the plug-in: one that cmake/ProductOptions.cmake calls PROBED. */
struct SProbedOption
{
    const char* mKeyword; // in add_aax_adapter()
    bool mIsSwitch;       // else a number
    const char* mRemedy;  // what it does for a plug-in that needs it and loads without; null: none does
    SOptionChoice (*mChoose)(const SProbeResult& inResult); // of a plug-in that was not refused

    /** @return its name on vst2probe's command line. */
    std::string Flag() const;
};

inline constexpr const char* kEntryVersionKeyword = "ENTRY_VERSION";
inline constexpr const char* kPortsFromCountsKeyword = "PORTS_FROM_COUNTS";

std::span<const SProbedOption> ProbedOptions();

/** What a product does best about each of them, by its keyword. */
using OptionChoices = std::map<std::string, SOptionChoice>;
/** @param inResult of a plug-in that was not refused. */
OptionChoices ChooseOptions(const SProbeResult& inResult);

/** The values of a product's options, by keyword. */
using OptionValues = std::map<std::string, std::int32_t>;
