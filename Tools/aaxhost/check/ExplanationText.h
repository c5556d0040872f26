#pragma once
#include "Tools/aaxhost/check/SCheck.h"

#include <span>
#include <string>

// Checks and their explanations, in lines of at most 100 columns.

/** Of one check, for a terminal. */
std::string ExplainedInWords(const SCheck& inCheck);
/** A page about some checks, in Markdown; `docs/checks.md` is that of all. */
std::string ExplainedOnPage(std::span<const SCheck* const> inChecks);
