#pragma once
#include "Tools/inspector/PluginFacts.h"
#include "Tools/inspector/ProbedOptions.h"

#include <nlohmann/json_fwd.hpp>

/** What is known of a plug-in, for programs: its facts, which options and features a product of it wants,
 * what does not cross without those, and warnings. */
nlohmann::ordered_json FactsAsJson(const SPluginFacts& inFacts, const OptionChoices& inOptions);

/** The same of a plug-in that was looked at; where it was refused, why. */
nlohmann::ordered_json ProbeAsJson(const SProbeResult& inResult);
