#include "Tools/inspector/FactsReport.h"

#include "Tools/inspector/FeatureUses.h"
#include "Tools/inspector/PluginLimits.h"

#include <nlohmann/json.hpp>

nlohmann::ordered_json FactsAsJson(const SPluginFacts& inFacts, const OptionChoices& inOptions)
{
    nlohmann::ordered_json json = inFacts;
    for (const SProbedOption& option : ProbedOptions())
    {
        const SOptionChoice& choice = inOptions.at(option.mKeyword);
        auto& entry = json["options"][option.mKeyword];
        entry["value"] = choice.mValue;
        if (option.mIsSwitch)
            entry["value"] = choice.mValue != 0;
        entry["reason"] = choice.mReason;
    }
    for (const SFeatureUse& feature : FeatureUses(inFacts))
        json["features"][feature.mName] = {{"used", feature.mIsUsed}, {"reason", feature.mReason}};
    json["limits"] = nlohmann::ordered_json::array();
    for (const SPluginLimit& limit : LimitsOf(inFacts))
        json["limits"].push_back({{"what", limit.mWhat},
                                  {"how", limit.mHow},
                                  {"reason", limit.mReason},
                                  {"liftedBy", limit.mLiftedBy}});
    json["warnings"] = WarningsOf(inFacts, inOptions.at(kPortsFromCountsKeyword).mValue != 0, true);
    return json;
}

nlohmann::ordered_json ProbeAsJson(const SProbeResult& inResult)
{
    if (!inResult.mFacts)
        return {{"refused", inResult.mRefusal}};
    return FactsAsJson(*inResult.mFacts, ChooseOptions(inResult));
}
