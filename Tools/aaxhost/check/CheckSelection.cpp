#include "Tools/aaxhost/check/CheckSelection.h"

#include <algorithm>
#include <fmt/format.h>
#include <fstream>

#include <fnmatch.h>

namespace
{
constexpr char kBlanks[] = " \t\r";

/** @return nothing for a line that says nothing. */
SCheckPattern PatternOf(const std::string& inLine)
{
    const auto begin = inLine.find_first_not_of(kBlanks);
    if (begin == std::string::npos || inLine[begin] == '#')
        return {};
    const auto end = std::min(inLine.find_first_of(kBlanks, begin), inLine.size());
    const auto reason = inLine.find_first_not_of(kBlanks, end);
    const auto last = inLine.find_last_not_of(kBlanks);
    return {inLine.substr(begin, end - begin),
            reason == std::string::npos ? std::string() : inLine.substr(reason, last + 1 - reason)};
}

COutcome<SDone> ReadFile(const std::string& inFile, std::vector<SCheckPattern>& ioPatterns)
{
    std::ifstream file(inFile);
    if (!file)
        return SProblem{fmt::format("The file '{}' cannot be read.", inFile)};
    for (std::string line; std::getline(file, line);)
        if (SCheckPattern pattern = PatternOf(line); !pattern.mPattern.empty())
            ioPatterns.push_back(std::move(pattern));
    return SDone{};
}
} // namespace

bool SCheckPattern::Matches(const SCheck& inCheck) const
{
    const auto matches = [&](const std::string& text)
    { return fnmatch(mPattern.c_str(), text.c_str(), 0) == 0; };
    return matches(inCheck.mName) || matches(std::string(inCheck.Group()));
}

COutcome<std::vector<SCheckPattern>> ReadCheckPatterns(const std::vector<std::string>& inArguments)
{
    std::vector<SCheckPattern> patterns;
    for (const std::string& argument : inArguments)
        if (!argument.starts_with('@'))
            patterns.push_back({argument, {}});
        else if (const auto read = ReadFile(argument.substr(1), patterns); !read)
            return read.Problem();
    for (const SCheckPattern& pattern : patterns)
        if (std::ranges::none_of(AllChecks(), [&](const SCheck& check) { return pattern.Matches(check); }))
            return SProblem{fmt::format("There is no check '{}'; --list names them all.", pattern.mPattern)};
    return patterns;
}

const SCheckPattern* FindPattern(const std::vector<SCheckPattern>& inPatterns, const SCheck& inCheck)
{
    const auto found = std::ranges::find_if(inPatterns, [&](const SCheckPattern& pattern)
                                            { return pattern.Matches(inCheck); });
    return found == inPatterns.end() ? nullptr : &*found;
}

std::vector<const SCheck*> MatchingChecks(const std::vector<SCheckPattern>& inPatterns)
{
    std::vector<const SCheck*> checks;
    for (const SCheck& check : AllChecks())
        if (FindPattern(inPatterns, check) != nullptr)
            checks.push_back(&check);
    return checks;
}
