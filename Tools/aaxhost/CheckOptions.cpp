#include "Tools/aaxhost/CheckOptions.h"

#include "Tools/aaxhost/CommandOptions.h"
#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/window/CVirtualDisplay.h"

#include <algorithm>
#include <cstdlib>
#include <fmt/format.h>

void AddStrictnessOption(CLI::App& ioCommand, SCheckChoice& outChoice)
{
    ioCommand
        .add_option("--strictness", outChoice.mJob.mStrictness,
                    "1, done in seconds, to 10, which takes minutes (5)")
        ->check(WholeNumberFrom(kLowestStrictness, kHighestStrictness))
        ->envname("AAXHOST_CHECK_STRICTNESS");
}

void AddSelectionOptions(CLI::App& ioCommand, SCheckChoice& outChoice)
{
    ioCommand
        .add_option("--only", outChoice.mOnly,
                    "Run these only, whatever their strictness; a name, a group, either with *, or @FILE "
                    "with one a line")
        ->type_name("CHECK")
        ->allow_extra_args(false);
    ioCommand
        .add_option("--skip", outChoice.mSkip,
                    "Leave these out; as --only, and what stands behind one in a file is the reason, which "
                    "is shown")
        ->type_name("CHECK")
        ->allow_extra_args(false)
        ->envname("AAXHOST_CHECK_SKIP");
    ioCommand
        .add_option("--limit", outChoice.mJob.mLimitSeconds,
                    "Seconds that a check may take, and a look at the plug-in; otherwise by the strictness")
        ->check(NumberFrom(0.1, 86400.0))
        ->envname("AAXHOST_CHECK_LIMIT");
}

COutcome<SCheckJob> JobOf(const SCheckChoice& inChoice)
{
    SCheckJob job = inChoice.mJob;
    const auto only = ReadCheckPatterns(inChoice.mOnly);
    if (!only)
        return only.Problem();
    auto leftOut = ReadCheckPatterns(inChoice.mSkip);
    if (!leftOut)
        return leftOut.Problem();
    job.mLeftOut = std::move(*leftOut);
    job.mChecks = only->empty() ? ChecksFor(job.mStrictness) : MatchingChecks(*only);
    return job;
}

void StartDisplay(const SCheckJob& inJob, CVirtualDisplay& ioDisplay)
{
    const bool isWanted =
        std::ranges::any_of(inJob.mChecks, [](const SCheck* check)
                            { return check->Group() == "editor" || check->Group() == "features"; });
    if (!isWanted || std::getenv("DISPLAY") != nullptr || // ours, too
        !CVirtualDisplay::IsInstalled())
        return;
    if (const std::string problem = ioDisplay.Start(); !problem.empty())
        fmt::print(stderr, "Editors cannot be looked at: {}.\n", problem);
}

EFitness Worse(EFitness inOne, EFitness inOther)
{
    for (const EFitness worse : {EFitness::NotFit, EFitness::Unknown})
        if (inOne == worse || inOther == worse)
            return worse;
    return EFitness::Fit;
}

int ExitFor(EFitness inFitness)
{
    switch (inFitness)
    {
    case EFitness::Fit: return kExitSuccess;
    case EFitness::NotFit: return kExitFailure;
    case EFitness::Unknown: break;
    }
    return kExitUnknown;
}
