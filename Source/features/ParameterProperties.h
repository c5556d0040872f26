#pragma once
#include <cstdint>
#include <string>

class CVst2Plugin;

/** What a plug-in says of one of its parameters beside name and value. */
struct SParameterProperties
{
    std::string mShortName;   // empty: none
    std::uint32_t mSteps = 0; // at least 2 of one that has steps; 0: as many values as there are
};

SParameterProperties ReadParameterProperties(const CVst2Plugin& inPlugin, long inIndex);

/** @return whether the plug-in says of any of its first `inParameters` parameters that it can be automated.
 * One that says so of none is taken not to know the question. */
bool AnswersAutomation(const CVst2Plugin& inPlugin, long inParameters);

bool CanBeAutomated(const CVst2Plugin& inPlugin, long inIndex);
