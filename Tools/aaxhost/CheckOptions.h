#pragma once
#include "Tools/aaxhost/check/CheckSummary.h"

#include <string>
#include <vector>

namespace CLI
{
class App;
}
class CVirtualDisplay;

/** What `check` and `survey` share. */

/** Which checks the command line asks for, and how. */
struct SCheckChoice
{
    SCheckJob mJob; // but for the module and the checks
    std::vector<std::string> mOnly;
    std::vector<std::string> mSkip;
};

/** `--strictness`. */
void AddStrictnessOption(CLI::App& ioCommand, SCheckChoice& outChoice);
/** `--only`, `--skip` and `--limit`. */
void AddSelectionOptions(CLI::App& ioCommand, SCheckChoice& outChoice);
/** With the checks; a problem where a pattern means none. */
COutcome<SCheckJob> JobOf(const SCheckChoice& inChoice);

/** For the editors, where they are to be looked at, there is none and one can be had. */
void StartDisplay(const SCheckJob& inJob, CVirtualDisplay& ioDisplay);

/** One that may be unfit is worse than one that is fit. */
EFitness Worse(EFitness inOne, EFitness inOther);
/** The exit code: 0 fit, 1 not fit, 3 unknown. */
int ExitFor(EFitness inFitness);
