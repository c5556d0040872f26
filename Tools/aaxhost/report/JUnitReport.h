#pragma once
#include "Tools/aaxhost/check/CheckRunner.h"

/** What was checked of one module. */
struct SCheckedModule
{
    SCheckJob mJob;
    std::vector<SCheckResult> mResults;
};

/** The form that build servers read: a suite a module, a test case a check. Warnings are passed cases with an
 * output. */
std::string JUnitReport(const std::vector<SCheckedModule>& inModules);
