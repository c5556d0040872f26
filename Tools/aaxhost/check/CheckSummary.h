#pragma once
#include "Tools/aaxhost/check/CheckRunner.h"

#include <nlohmann/json_fwd.hpp>

/** How many of each verdict. */
struct SCheckCounts
{
    int mPassed = 0;
    int mWarnings = 0;
    int mFailed = 0;
    int mSkipped = 0;
    int mUnseen = 0;
    int mUnstable = 0;
    // Of the failed and the unstable ones:
    int mModulesOwn = 0;
    int mPluginsOwn = 0;
};
SCheckCounts CountVerdicts(const std::vector<SCheckResult>& inResults);

enum class EFitness
{
    Fit,
    NotFit,
    Unknown // nothing was checked, or something could not be on this machine
};
EFitness FitnessOf(const std::vector<SCheckResult>& inResults);
/** "Fit to ship." */
std::string FitnessInWords(const std::vector<SCheckResult>& inResults);

/** "only through the module"; empty where nothing is to be said. */
std::string FaultInWords(const SCheckResult& inResult);
/** "137 checks: 3 failed (1 only through the module, 2 the plug-in's own), 134 passed." */
std::string CountsInWords(const std::vector<SCheckResult>& inResults);
/**
 * The machine's form of it; the same bytes for the same results.
 * @param inPlugin what is known of the wrapped plug-in; null: nothing is said of it.
 */
std::string ResultsAsJson(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults,
                          const nlohmann::ordered_json* inPlugin = nullptr);
