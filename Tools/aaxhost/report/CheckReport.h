#pragma once
#include "Tools/aaxhost/check/CheckRunner.h"
#include "Tools/aaxhost/report/Measure.h"

#include <string>

/** One HTML page that needs nothing else: no file, no network, no script. */
std::string ReportPage(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults,
                       const SReportMaterial& inMaterial);
/** As above, with the material taken from the module now, which takes some seconds. */
std::string ReportPage(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults);
