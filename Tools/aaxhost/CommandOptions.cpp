#include "Tools/aaxhost/CommandOptions.h"

#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/aaxhost/player/ParseNumber.h"

#include <cmath>
#include <fmt/format.h>
#include <map>

CLI::Validator NumberFrom(double inLowest, double inHighest)
{
    const auto check = [=](const std::string& text)
    {
        const auto value = ParseNumber(text);
        const bool taken = value && *value >= inLowest && *value <= inHighest;
        return taken ? std::string()
                     : fmt::format("'{}' is not a number from {} to {}.", text, inLowest, inHighest);
    };
    return CLI::Validator(check, fmt::format("{} to {}", inLowest, inHighest));
}

CLI::Validator WholeNumberFrom(int inLowest, int inHighest)
{
    const auto check = [=](const std::string& text)
    {
        const auto value = ParseNumber(text);
        const bool taken = value && *value >= inLowest && *value <= inHighest &&
                           *value == std::floor(*value) &&
                           text.find_first_not_of("0123456789") == std::string::npos;
        return taken ? std::string()
                     : fmt::format("'{}' is not a whole number from {} to {}.", text, inLowest, inHighest);
    };
    return CLI::Validator(check, fmt::format("{} to {}", inLowest, inHighest));
}

CLI::Validator Assignment()
{
    const auto check = [](const std::string& text)
    {
        const SAssignment parts = SplitAssignment(text);
        return parts.mID.empty() || parts.mRest.empty() ? fmt::format("'{}' is not of the form ID=...", text)
                                                        : std::string();
    };
    return CLI::Validator(check, "");
}

void AddAnswersOption(CLI::App& ioCommand, EAnswers& outAnswers)
{
    std::map<std::string, EAnswers> names;
    std::string form;
    for (const EAnswers answers : kAllAnswers)
    {
        names.emplace(NameOfAnswers(answers), answers);
        form += (form.empty() ? "" : "|") + std::string(NameOfAnswers(answers));
    }
    ioCommand.add_option("--answers", outAnswers, "When the host answers the module's requests (late)")
        ->type_name(form)
        ->transform(CLI::CheckedTransformer(names).description(""));
}
