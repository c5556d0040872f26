#pragma once
#include "Tools/aaxhost/check/CheckRunner.h"
#include "Tools/aaxhost/report/Material.h"

#include <string>
#include <vector>

// The sections of the page in their order, each as HTML.

/** What the page is about: the product's name, or that of its file. */
std::string TitleOf(const SCheckJob& inJob, const SReportIdentity& inIdentity);
/** The verdict, what needs a look, and what the product is. */
std::string HeaderSection(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults,
                          const SReportIdentity& inIdentity);
/** Inputs on the left, outputs on the right, one wire a stem. */
std::string StemsSection(const SReportIdentity& inIdentity);
/** A group after the other: open what did not pass, folded the rest. */
std::string ChecksSection(const std::vector<SCheckResult>& inResults);
std::string SignalsSection(const SReportSignals& inSignals);
std::string LatencySection(const SReportMaterial& inMaterial, const std::vector<SCheckResult>& inResults);
std::string AutomationSection(const SReportAutomation& inAutomation);
std::string CostSection(const SReportCost& inCost);
std::string ParametersSection(const SReportIdentity& inIdentity);
std::string EditorSection(const SReportEditor& inEditor);
/** How to have it again. */
std::string RunSection(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults);
