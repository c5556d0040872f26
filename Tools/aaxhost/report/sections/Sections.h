#pragma once
#include "Tools/aaxhost/check/CheckRunner.h"
#include "Tools/aaxhost/report/Material.h"

#include <string>
#include <vector>

// The sections of the page in their order, each as HTML.

/** What the page is about: the product's name, or that of its file. */
std::string TitleOf(const SCheckJob& inJob, const SReportIdentity& inIdentity);
/** The run, the verdict, and what needs a look. */
std::string HeaderSection(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults,
                          const SReportMaterial& inMaterial);
/** When, where, with what it was checked, and how to have it again; a part of the header. */
std::string RunSection(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults,
                       const SReportMaterial& inMaterial);
/** Inputs on the left, outputs on the right, one wire a stem. */
std::string StemsSection(const SReportIdentity& inIdentity);
/** Of each signal its waveform, spectrum and spectrogram. */
std::string SignalsSection(const SReportSignals& inSignals);
/** Reported and measured, by sample rate and block size. */
std::string LatencySection(const SReportMaterial& inMaterial);
/** A small chart for each parameter that changes the level, and the names of the others. */
std::string SweepSection(const SReportSweep& inSweep, const SReportParameterTexts& inTexts);
std::string AutomationSection(const SReportAutomation& inAutomation);
/** As a share of real time, against the plug-in alone. */
std::string CostSection(const SReportCost& inCost);
std::string ParametersSection(const SReportIdentity& inIdentity, const SReportParameterTexts& inTexts);
std::string EditorSection(const SReportEditor& inEditor);
/** What does not cross for this plug-in, and what of it this product's features pass on. */
std::string LimitsSection(const SProbeResult& inPlugin, const std::vector<std::string>& inFeatures);
/** A group after the other: open what did not pass, folded the rest. */
std::string ChecksSection(const std::vector<SCheckResult>& inResults);
