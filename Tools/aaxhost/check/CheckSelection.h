#pragma once
#include "Tools/aaxhost/check/SCheck.h"
#include "Tools/support/COutcome.h"

#include <string>
#include <vector>

/** Which checks somebody means, and why. */
struct SCheckPattern
{
    std::string mPattern; // a name, a group, or either with `*` and `?`
    std::string mReason;  // as it was given; may be empty

    bool Matches(const SCheck& inCheck) const;
};

/**
 * Reads what stands on a command line: a pattern each, or `@FILE` for a file with a pattern a line and a
 * reason behind it. Empty lines and those that begin with `#` say nothing. A pattern that means no check is a
 * problem.
 */
COutcome<std::vector<SCheckPattern>> ReadCheckPatterns(const std::vector<std::string>& inArguments);

/** The checks that they mean, in their own order, each once. */
std::vector<const SCheck*> MatchingChecks(const std::vector<SCheckPattern>& inPatterns);
/** The first that matches; null where none does. */
const SCheckPattern* FindPattern(const std::vector<SCheckPattern>& inPatterns, const SCheck& inCheck);
