#pragma once
#include "Tools/aaxhost/check/CheckRunner.h"

#include <string>

/** What somebody has to know to repeat a run, or to compare it with another. */
struct SRunFacts
{
    std::string mModule;  // or the plug-in of a survey
    std::string mTool;    // with its version
    std::string mDate;    // "2026-03-01 14:05 UTC"
    std::string mMachine; // system and processor
    std::string mCommand; // that makes the run again
};
/** Of a run that ended now, on this machine. */
SRunFacts RunFactsOf(const SCheckJob& inJob);

/** As a shell takes it for one word. */
std::string QuotedForShell(const std::string& inText);
