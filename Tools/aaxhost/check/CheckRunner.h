#pragma once
#include "Tools/aaxhost/check/SCheck.h"
#include "Tools/aaxhost/host/CHostAutomation.h"

#include <functional>
#include <string>
#include <vector>

struct SCheckResult
{
    const SCheck* mCheck = nullptr;
    SFinding mFinding;
};

struct SCheckJob
{
    std::string mModule;
    int mStrictness = 5;
    std::vector<const SCheck*> mChecks; // in the order in which they run
    double mLimitSeconds = 0.0;         // for each; 0: as long as the strictness allows
    EAnswers mAnswers = EAnswers::Late; // of the host, but for the checks that try every kind
};

/** As long as a check may take at a strictness. */
double LimitSeconds(int inStrictness);
/** The checks of a strictness, or those named, whatever theirs is. */
std::vector<const SCheck*> ChecksFor(int inStrictness);

/**
 * Runs each check in a process of its own. One that crashes or takes too long has failed and ends nothing
 * else; where the module does not even open, or gives no instance, the rest is skipped.
 *
 * @param inDone hears each result as soon as it is there.
 */
std::vector<SCheckResult> RunChecks(const SCheckJob& inJob,
                                    const std::function<void(const SCheckResult&)>& inDone = {});

/** How many of each verdict, by its number. */
struct SCheckCounts
{
    int mPassed = 0;
    int mWarnings = 0;
    int mFailed = 0;
    int mSkipped = 0;
};
SCheckCounts CountVerdicts(const std::vector<SCheckResult>& inResults);
/** "62 checks: 58 passed, 1 warning, 3 skipped. Fit to ship." */
std::string ClosingLine(const std::vector<SCheckResult>& inResults);
/** The machine's form of it; the same bytes for the same results. */
std::string ResultsAsJson(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults);
