#include "Tools/aaxhost/player/ParameterChoice.h"

#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/commandline/NearestNames.h"

#include <algorithm>
#include <fmt/format.h>

namespace
{
constexpr std::size_t kMostListed = 8; // some plug-ins have hundreds of parameters without a use, of one name

std::string Trimmed(const std::string& inText)
{
    const auto first = inText.find_first_not_of(' ');
    return first == std::string::npos ? "" : inText.substr(first, inText.find_last_not_of(' ') - first + 1);
}

SProblem Ambiguous(const std::vector<const SParameterInfo*>& inFound, const std::string& inWord)
{
    std::string list;
    for (std::size_t i = 0; i < std::min(inFound.size(), kMostListed); ++i)
        list += fmt::format("{}'{}' ({})", i == 0 ? "" : ", ", inFound[i]->mID, Trimmed(inFound[i]->mName));
    if (inFound.size() > kMostListed)
        list += fmt::format(" and {} more", inFound.size() - kMostListed);
    return {fmt::format("'{}' may be {} parameters, so write the identifier of one: {}.", inWord,
                        inFound.size(), list)};
}

SProblem Unknown(const std::vector<SParameterInfo>& inParameters, const std::string& inWord)
{
    std::vector<std::string> names;
    names.reserve(inParameters.size());
    for (const SParameterInfo& parameter : inParameters)
        names.push_back(Trimmed(parameter.mName));
    const std::vector<std::string> near = NearestNames(inWord, names);
    if (!near.empty())
        return {fmt::format("The module has no parameter '{}'; did you mean {}?", inWord, JoinNames(near))};
    return {
        fmt::format("The module has no parameter '{}'; 'aaxhost describe' lists those that it has.", inWord)};
}
} // namespace

COutcome<std::string> ChooseParameter(const std::vector<SParameterInfo>& inParameters,
                                      const std::string& inWord)
{
    using Matches = bool (*)(const SParameterInfo&, const std::string&);
    const Matches steps[] = {[](const SParameterInfo& parameter, const std::string& word)
                             { return parameter.mID == word; },
                             [](const SParameterInfo& parameter, const std::string& word)
                             { return Trimmed(parameter.mName) == word; },
                             [](const SParameterInfo& parameter, const std::string& word) {
                                 return EqualsWithoutCase(parameter.mID, word) ||
                                        EqualsWithoutCase(Trimmed(parameter.mName), word);
                             }};
    for (const Matches matches : steps)
    {
        std::vector<const SParameterInfo*> found;
        for (const SParameterInfo& parameter : inParameters)
            if (matches(parameter, inWord))
                found.push_back(&parameter);
        if (found.size() == 1)
            return found.front()->mID;
        if (found.size() > 1)
            return Ambiguous(found, inWord);
    }
    return Unknown(inParameters, inWord);
}
