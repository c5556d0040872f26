#include "Tools/aaxhost/check/CheckSummary.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

namespace
{
const char* NameOfFault(EFault inFault)
{
    switch (inFault)
    {
    case EFault::None: return "none";
    case EFault::Module: return "module";
    case EFault::Plugin: return "plug-in";
    case EFault::Unknown: return "unknown";
    }
    return "";
}

bool IsFailure(const SCheckResult& inResult)
{
    return inResult.mFinding.mVerdict == EVerdict::Failed || inResult.mFinding.mVerdict == EVerdict::Unstable;
}

/** Those of the parts that are not none, with commas. */
std::string Parts(std::initializer_list<std::pair<int, std::string>> inParts)
{
    std::vector<std::string> list;
    for (const auto& [count, words] : inParts)
        if (count > 0)
            list.push_back(fmt::format("{} {}", count, words));
    return fmt::format("{}", fmt::join(list, ", "));
}
} // namespace

SCheckCounts CountVerdicts(const std::vector<SCheckResult>& inResults)
{
    SCheckCounts counts;
    for (const SCheckResult& result : inResults)
    {
        switch (result.mFinding.mVerdict)
        {
        case EVerdict::Passed: ++counts.mPassed; break;
        case EVerdict::Warning: ++counts.mWarnings; break;
        case EVerdict::Failed: ++counts.mFailed; break;
        case EVerdict::Skipped: ++counts.mSkipped; break;
        case EVerdict::Unseen: ++counts.mUnseen; break;
        case EVerdict::Unstable: ++counts.mUnstable; break;
        }
        if (IsFailure(result))
        {
            counts.mModulesOwn += result.mFault == EFault::Module ? 1 : 0;
            counts.mPluginsOwn += result.mFault == EFault::Plugin ? 1 : 0;
        }
    }
    return counts;
}

EFitness FitnessOf(const std::vector<SCheckResult>& inResults)
{
    const SCheckCounts counts = CountVerdicts(inResults);
    if (counts.mFailed + counts.mUnstable > 0)
        return EFitness::NotFit;
    return counts.mUnseen > 0 || counts.mPassed + counts.mWarnings == 0 ? EFitness::Unknown : EFitness::Fit;
}

std::string FitnessInWords(const std::vector<SCheckResult>& inResults)
{
    switch (FitnessOf(inResults))
    {
    case EFitness::Fit: return "Fit to ship.";
    case EFitness::NotFit: return "Not fit to ship.";
    case EFitness::Unknown: break;
    }
    const auto unseen = std::ranges::find(
        inResults, EVerdict::Unseen, [](const SCheckResult& result) { return result.mFinding.mVerdict; });
    return "Not known to be fit: " +
           (unseen == inResults.end() ? "nothing was checked." : unseen->mFinding.mReason);
}

std::string FaultInWords(const SCheckResult& inResult)
{
    switch (inResult.mFault)
    {
    case EFault::None: return {};
    case EFault::Module: return "only through the module";
    case EFault::Plugin: return "the plug-in's own: it does so without the module";
    case EFault::Unknown: break;
    }
    return "whose fault it is could not be told";
}

std::string CountsInWords(const std::vector<SCheckResult>& inResults)
{
    const SCheckCounts counts = CountVerdicts(inResults);
    const std::string faults =
        Parts({{counts.mModulesOwn, "only through the module"}, {counts.mPluginsOwn, "the plug-in's own"}});
    const std::string whose = faults.empty() ? "" : fmt::format(" ({})", faults);
    return fmt::format("{} check{}: {}.", inResults.size(), inResults.size() == 1 ? "" : "s",
                       Parts({{counts.mFailed + counts.mUnstable, "failed" + whose},
                              {counts.mUnstable, "of them unstable"},
                              {counts.mWarnings, counts.mWarnings == 1 ? "warning" : "warnings"},
                              {counts.mUnseen, "unseen"},
                              {counts.mSkipped, "skipped"},
                              {counts.mPassed, "passed"}}));
}

std::string ResultsAsJson(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults,
                          const nlohmann::ordered_json* inPlugin)
{
    const SCheckCounts counts = CountVerdicts(inResults);
    nlohmann::ordered_json json;
    json["module"] = inJob.mModule;
    json["strictness"] = inJob.mStrictness;
    json["seed"] = inJob.mSeed;
    if (!inJob.mSizes.mRates.empty())
        json["rates"] = inJob.mSizes.mRates;
    if (!inJob.mSizes.mBlocks.empty())
        json["blocks"] = inJob.mSizes.mBlocks;
    json["verdict"] = FitnessInWords(inResults);
    json["passed"] = counts.mPassed;
    json["warnings"] = counts.mWarnings;
    json["failed"] = counts.mFailed;
    json["skipped"] = counts.mSkipped;
    json["unseen"] = counts.mUnseen;
    json["unstable"] = counts.mUnstable;
    json["only_through_the_module"] = counts.mModulesOwn;
    json["the_plug_ins_own"] = counts.mPluginsOwn;
    if (inPlugin != nullptr)
        json["plugin"] = *inPlugin;
    json["checks"] = nlohmann::ordered_json::array();
    for (const SCheckResult& result : inResults)
    {
        auto& entry = json["checks"].emplace_back();
        entry["name"] = result.mCheck->mName;
        entry["group"] = result.mCheck->Group();
        entry["description"] = result.mCheck->mDescription;
        entry["strictness"] = result.mCheck->mStrictness;
        entry["result"] = NameOfVerdict(result.mFinding.mVerdict);
        entry["reason"] = result.mFinding.mReason;
        if (result.mFault != EFault::None)
            entry["fault"] = NameOfFault(result.mFault);
        if (result.mAlone)
            entry["alone"] = {{"result", NameOfVerdict(result.mAlone->mVerdict)},
                              {"reason", result.mAlone->mReason}};
    }
    // Plug-ins put what they like into their texts.
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}
