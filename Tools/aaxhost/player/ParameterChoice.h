#pragma once
#include "Tools/support/COutcome.h"

#include <string>
#include <vector>

struct SParameterInfo;

/**
 * Finds the parameter that somebody means: the one with exactly this identifier, else with exactly this name,
 * else with the one or the other but for upper and lower case. Blanks around a parameter's name do not count.
 *
 * @return its identifier; or a sentence with those that share the name, or with the nearest names.
 */
COutcome<std::string> ChooseParameter(const std::vector<SParameterInfo>& inParameters,
                                      const std::string& inWord);
