#pragma once
#include <string>
#include <vector>

/** Whether two texts are equal but for the case of the letters A to Z. */
bool EqualsWithoutCase(const std::string& inOne, const std::string& inOther);

/**
 * What somebody may have meant who wrote a word that is not among the names.
 *
 * @return the names that differ from the word in at most a third of their letters, or begin with it, without
 * regard to case; the nearest first, at most three, each once.
 */
std::vector<std::string> NearestNames(const std::string& inWord, const std::vector<std::string>& inNames);

/** @return "'A', 'B' or 'C'"; empty without names. */
std::string JoinNames(const std::vector<std::string>& inNames);
