#pragma once
#include "Tools/aaxhost/report/Material.h"

#include <string>

// The parts of the report's material. Each opens the module in this process, and throws an SCheckEnd where
// the module gives nothing to measure.

/** What the module is, as the host hears it. */
SReportIdentity MeasureIdentity(const std::string& inModule);
/** What comes out for a sine, noise and an impulse, or for a note. */
SReportSignals MeasureSignals(const std::string& inModule);
/** The level while the most audible parameter moves. */
SReportAutomation MeasureAutomation(const std::string& inModule);
/** What a block costs, by its size. */
SReportCost MeasureCost(const std::string& inModule);
/** The level over the value of each parameter. @param inSeconds begins none after this, and says so. */
SReportSweep MeasureSweep(const std::string& inModule, double inSeconds);
/** What is reported, and how late an impulse comes out, by rate and block size. @param inSeconds as above. */
SReportLatency MeasureLatency(const std::string& inModule, double inSeconds);
/** What the plug-in alone writes for its parameters' values. */
SReportParameterTexts ReadTexts(const std::string& inModule);
/** The plug-in's editor; needs a display. */
SReportEditor PictureEditor(const std::string& inModule);

inline constexpr int kMeasureStrictness = 5;
