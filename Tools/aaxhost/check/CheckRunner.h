#pragma once
#include "Tools/aaxhost/check/CCheckContext.h"
#include "Tools/aaxhost/check/CheckSelection.h"
#include "Tools/aaxhost/check/SCheck.h"
#include "Tools/aaxhost/host/CHostAutomation.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/** Where a finding that is no pass comes from. */
enum class EFault
{
    None, // it passed, or there was nothing to look at
    Module,
    Plugin, // it does so without the module
    Unknown // with the plug-in alone it could not be told
};

struct SCheckResult
{
    const SCheck* mCheck = nullptr;
    SFinding mFinding{};
    EFault mFault = EFault::None;
    std::optional<SFinding> mAlone{}; // of the same check with the plug-in alone, where it was run
    double mSeconds = 0.0;            // that it took
};

struct SCheckJob
{
    std::string mModule;
    int mStrictness = 5;
    std::vector<const SCheck*> mChecks; // in the order in which they run
    double mLimitSeconds = 0.0;         // for each; 0: as long as the strictness allows
    EAnswers mAnswers = EAnswers::Late; // of the host, but for the checks that try every kind
    int mJobs = 1;                      // checks at a time
    int mRepeats = 1;                   // runs of each check
    std::uint32_t mSeed = 0;            // of all that is chosen by chance
    SSizes mSizes{};
    std::vector<SCheckPattern> mLeftOut{};
    // Of a survey, whose module is gone afterwards:
    std::string mPlugin{};  // that was put into it
    std::string mCommand{}; // that makes it again, without the options that choose checks
};

/** As long as a check may take at a strictness. */
double LimitSeconds(int inStrictness);
/** Those that run at a strictness. */
std::vector<const SCheck*> ChecksFor(int inStrictness);

/** Runs one check in this process: for a debugger. */
SFinding RunCheckHere(const SCheck& inCheck, const SCheckJob& inJob);

/**
 * Runs each check in a process of its own, so that one that crashes or takes too long has failed and ends
 * nothing else. One that does not pass is run once more, and is unstable where it ends otherwise; then it is
 * repeated with the plug-in alone, but for those that are about what the module itself says; one that crashes
 * or hangs through the module only is tried by turns. Where the module does not even open, or gives no
 * instance, the rest is skipped.
 *
 * @param inDone hears each result in the order of the checks, as soon as it and those ahead of it are there.
 */
std::vector<SCheckResult> RunChecks(const SCheckJob& inJob,
                                    const std::function<void(const SCheckResult&)>& inDone = {});
