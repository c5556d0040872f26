#pragma once
#include <span>
#include <string_view>
#include <vector>

/** What a plug-in maker wants to know of a check. Each part is one paragraph of plain text. */
struct SExplanation
{
    const char* mCheck;   // its name
    const char* mDoes;    // what is done, with its numbers
    const char* mMatters; // why a host and a musician care
    const char* mMend;    // where the cause is, as a rule, and what to do about it
};

/** Null when there is none of that check. */
const SExplanation* FindExplanation(std::string_view inCheck);
/** Those of every group. */
std::vector<SExplanation> AllExplanations();

// One file for each file of checks.
std::span<const SExplanation> AutomationExplanations();
std::span<const SExplanation> DescriptionExplanations();
std::span<const SExplanation> EditorExplanations();
std::span<const SExplanation> FeatureExplanations();
std::span<const SExplanation> HostFeatureExplanations();
std::span<const SExplanation> LifeCycleExplanations();
std::span<const SExplanation> MidiExplanations();
std::span<const SExplanation> ParameterExplanations();
std::span<const SExplanation> RenderingExplanations();
std::span<const SExplanation> RobustnessExplanations();
std::span<const SExplanation> SignalExplanations();
std::span<const SExplanation> StateExplanations();
std::span<const SExplanation> TransportExplanations();
