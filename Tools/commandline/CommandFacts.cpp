#include "Tools/commandline/CommandFacts.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <sstream>
#include <string_view>

namespace
{
/** What the option's value must be; the library has it behind the name of the form. */
std::vector<std::string> RangesOf(CLI::Option& inOption)
{
    std::vector<std::string> ranges;
    try
    {
        for (int i = 0;; ++i)
            if (const std::string range = inOption.get_validator(i)->get_description(); !range.empty())
                ranges.push_back(range);
    }
    catch (const CLI::OptionNotFound&) // there are no more
    {
    }
    return ranges;
}

std::vector<std::string> SplitAt(const std::string& inText, char inSign)
{
    std::vector<std::string> parts;
    std::istringstream text(inText);
    for (std::string part; std::getline(text, part, inSign);)
        parts.push_back(part);
    return parts;
}

EOffer OfferFor(const std::string& inForm, const NameLists& inLists)
{
    if (inLists.contains(inForm))
        return EOffer::NameList;
    if (inForm.find('|') != std::string::npos)
        return EOffer::Choices;
    const auto has = [&](std::string_view part) { return inForm.find(part) != std::string::npos; };
    if (has("FOLDER"))
        return EOffer::Folders;
    // TEXT is a text of which nothing else is said.
    const bool isFile = has("FILE") || inForm == "MODULE" || inForm == "PLUGIN" || inForm == "TEXT";
    return isFile ? EOffer::Files : EOffer::Nothing;
}

std::vector<std::string> NamesOf(const std::set<CLI::Option*>& inOptions)
{
    std::vector<std::string> names;
    names.reserve(inOptions.size());
    for (const CLI::Option* const option : inOptions)
        names.push_back(option->get_name());
    std::ranges::sort(names); // the set is in the order of the addresses
    return names;
}

SOptionFacts FactsOfOption(CLI::Option& inOption, const NameLists& inLists)
{
    SOptionFacts facts;
    facts.mRange = RangesOf(inOption);
    for (const std::string& name : inOption.get_snames())
        facts.mNames.push_back("-" + name);
    for (const std::string& name : inOption.get_lnames())
        facts.mNames.push_back("--" + name);
    facts.mForm = inOption.get_type_name();
    if (!facts.mRange.empty()) // the first of them comes first
        facts.mForm.erase(facts.mForm.find(":" + facts.mRange.front()));
    if (inOption.get_positional())
        facts.mForm = inOption.get_name(true, false);
    facts.mMayHaveValue = inOption.get_items_expected_max() == 0 && !facts.mRange.empty();
    if (inOption.get_items_expected_max() == 0)
        facts.mForm.clear();
    facts.mOffer = OfferFor(facts.mForm, inLists);
    if (facts.mOffer == EOffer::Choices)
        facts.mChoices = SplitAt(facts.mForm, '|');
    facts.mNeeds = NamesOf(inOption.get_needs());
    facts.mExcludes = NamesOf(inOption.get_excludes());
    facts.mDescription = inOption.get_description();
    facts.mDefault = inOption.get_default_str();
    facts.mEnvironment = inOption.get_envname();
    facts.mIsRequired = inOption.get_required();
    facts.mIsRepeated = inOption.get_expected_max() == CLI::detail::expected_max_vector_size;
    return facts;
}

/** Cuts off what is said of the exit codes. @return it. */
std::string TakeExitCodes(std::string& ioText)
{
    const std::size_t at = ioText.rfind(kExitCodes);
    if (at == std::string::npos)
        return {};
    std::string codes = ioText.substr(at + std::string_view(kExitCodes).size());
    ioText.erase(at);
    ioText.erase(ioText.find_last_not_of(" \n") + 1);
    return codes;
}

SCommandFacts FactsBelow(CLI::App& inApp, const NameLists& inLists, const SCommandFacts& inAbove)
{
    SCommandFacts facts;
    facts.mPath = inAbove.mPath;
    facts.mPath.push_back(inApp.get_name());
    facts.mDescription = inApp.get_description();
    facts.mExitCodes = TakeExitCodes(facts.mDescription);
    facts.mNotes = inApp.get_footer();
    if (std::string codes = TakeExitCodes(facts.mNotes); !codes.empty())
        facts.mExitCodes = std::move(codes);
    for (CLI::Option* const option : inApp.get_options([](const CLI::Option*) { return true; }))
        if (!option->get_group().empty()) // else it is not for people
            (option->get_positional() ? facts.mArguments : facts.mOptions)
                .push_back(FactsOfOption(*option, inLists));
    if (inApp.get_fallthrough())
        std::ranges::copy_if(inAbove.mOptions, std::back_inserter(facts.mMoreOptions),
                             [&](const SOptionFacts& option) {
                                 return std::ranges::find(facts.mOptions, option.mNames,
                                                          &SOptionFacts::mNames) == facts.mOptions.end();
                             });
    for (CLI::App* const command : inApp.get_subcommands(nullptr))
        if (!command->get_group().empty())
            facts.mCommands.push_back(FactsBelow(*command, inLists, facts));
    facts.mNeedsCommand = inApp.get_require_subcommand_min() > 0;
    return facts;
}
} // namespace

SCommandFacts FactsOf(CLI::App& inApp, const NameLists& inLists) { return FactsBelow(inApp, inLists, {}); }

std::string JoinWords(const std::vector<std::string>& inWords, const std::string& inBetween)
{
    std::string text;
    for (const std::string& word : inWords)
        text += (text.empty() ? "" : inBetween) + word;
    return text;
}

std::vector<const SCommandFacts*> WithCommandsBelow(const SCommandFacts& inCommand)
{
    std::vector<const SCommandFacts*> all{&inCommand};
    for (const SCommandFacts& command : inCommand.mCommands)
        for (const SCommandFacts* const below : WithCommandsBelow(command))
            all.push_back(below);
    return all;
}
