#include "Tools/vst2probe/ExpectedProduct.h"

#include "Tools/vst2probe/ProductChoice.h"
#include "Tools/vst2probe/Warnings.h"

#include <fmt/format.h>

namespace
{
/** @return what to write instead, as the end of a sentence; empty when no version lets the plug-in load. */
std::string HelpfulVersion(const std::string& inProgram, const std::filesystem::path& inPlugin,
                           std::int32_t inRefused, std::chrono::milliseconds inLimit)
{
    for (const std::int32_t version : {kUsualEntryVersion, 0})
    {
        if (version != inRefused && ProbeOnce(inProgram, inPlugin, version, inLimit).facts)
        {
            return version == 0 ? "; without ENTRY_VERSION it loads"
                                : fmt::format("; with ENTRY_VERSION {} it loads", version);
        }
    }
    return {};
}
} // namespace

SExpectation TryProduct(const std::string& inProgram, const std::filesystem::path& inPlugin,
                        const OptionValues& inExpected, std::chrono::milliseconds inLimit)
{
    const std::int32_t entryVersion = inExpected.at(kEntryVersionKeyword);
    SExpectation expectation;
    const SProbeAttempt attempt = ProbeOnce(inProgram, inPlugin, entryVersion, inLimit);
    if (!attempt.facts)
    {
        expectation.refusal = attempt.refusal;
        if (attempt.askedVersion)
            expectation.refusal += HelpfulVersion(inProgram, inPlugin, entryVersion, inLimit);
        return expectation;
    }
    SProbeResult result;
    result.facts = attempt.facts;
    const SProductChoice choice = ChooseProduct(inPlugin, result, "");
    expectation.warnings = WarningsOf(*attempt.facts, inExpected.at(kPortsFromCountsKeyword) != 0);
    for (const SProbedOption& option : ProbedOptions())
    {
        const SOptionChoice& best = choice.options.at(option.keyword);
        if (option.remedy != nullptr && best.value != 0 && inExpected.at(option.keyword) == 0)
        {
            expectation.warnings.push_back(
                fmt::format("{} {} {}.", best.reason, option.keyword, option.remedy));
        }
    }
    return expectation;
}
