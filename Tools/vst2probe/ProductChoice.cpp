#include "Tools/vst2probe/ProductChoice.h"

#include "Tools/vst2probe/CategoryGuess.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>
#include <initializer_list>
#include <string_view>

namespace
{
constexpr const char* kFeaturesKeyword = "FEATURES";

bool IsUpper(char inByte) { return inByte >= 'A' && inByte <= 'Z'; }
bool IsLower(char inByte) { return inByte >= 'a' && inByte <= 'z'; }
bool IsLetterOrDigit(char inByte)
{
    return IsUpper(inByte) || IsLower(inByte) || (inByte >= '0' && inByte <= '9');
}
char Lower(char inByte) { return IsUpper(inByte) ? static_cast<char>(inByte - 'A' + 'a') : inByte; }
char Upper(char inByte) { return IsLower(inByte) ? static_cast<char>(inByte - 'a' + 'A') : inByte; }

/** @return the letters and digits of the first text that has any. */
std::string Identifier(std::initializer_list<std::string_view> inTexts)
{
    std::string identifier;
    for (const std::string_view text : inTexts)
    {
        std::ranges::copy_if(text, std::back_inserter(identifier), &IsLetterOrDigit);
        if (!identifier.empty())
            break;
    }
    return identifier;
}

std::string Lowered(std::string inText)
{
    std::ranges::transform(inText, inText.begin(), &Lower);
    return inText;
}

std::string ManufacturerId(const std::string& inVendor)
{
    std::string code = Lowered(Identifier({inVendor, "maker"})).substr(0, 4);
    code.resize(4, 'x');
    code.front() = Upper(code.front());
    return code;
}

/** A value of a CMake call: quoted when it has to be. */
std::string Quoted(const std::string& inText)
{
    if (inText.find_first_of(" ;()#\"\\$\t@^") == std::string::npos)
        return inText;
    std::string quoted = "\"";
    for (const char byte : inText)
    {
        if (byte == '"' || byte == '\\' || byte == '$')
            quoted += '\\';
        quoted += byte;
    }
    return quoted + '"';
}

/** @return what to write instead, as the end of a sentence; empty when no version lets the plug-in load. */
std::string HelpfulVersion(const std::string& inProgram, const std::filesystem::path& inPlugin,
                           std::int32_t inRefused, std::chrono::milliseconds inLimit)
{
    for (const std::int32_t version : {kUsualEntryVersion, 0})
    {
        if (version != inRefused && ProbeOnce(inProgram, inPlugin, version, inLimit).mFacts)
        {
            return version == 0 ? "; without ENTRY_VERSION it loads"
                                : fmt::format("; with ENTRY_VERSION {} it loads", version);
        }
    }
    return {};
}
} // namespace

bool IsProductName(const std::string& inName)
{
    return !inName.empty() &&
           std::ranges::all_of(
               inName, [](char inByte) { return IsLetterOrDigit(inByte) || inByte == '-' || inByte == '_'; });
}

std::string SProductChoice::CmakeCall() const
{
    std::string call = fmt::format("add_aax_adapter({}\n    SOURCE_VST       {}\n    EFFECT_ID        {}\n"
                                   "    MANUFACTURER_ID  {}",
                                   mName, Quoted(mSourceVst.string()), mEffectId, mManufacturerId);
    for (const SProbedOption& option : ProbedOptions())
    {
        if (const std::int32_t value = Value(option.mKeyword); value != 0)
        {
            call += option.mIsSwitch ? fmt::format("\n    {}", option.mKeyword)
                                     : fmt::format("\n    {:<16} {}", option.mKeyword, value);
        }
    }
    if (!mCategory.empty())
        call += fmt::format("\n    # CATEGORY       {}", mCategory);
    return call + fmt::format("\n    {:<16} ALL)", kFeaturesKeyword);
}

std::vector<std::string> SProductChoice::ConfigureArguments() const
{
    std::vector<std::string> arguments = {
        "-DAAXADAPTER_PRODUCT=" + mName, "-DAAXADAPTER_SOURCE_VST=" + mSourceVst.string(),
        "-DAAXADAPTER_EFFECT_ID=" + mEffectId, "-DAAXADAPTER_MANUFACTURER_ID=" + mManufacturerId};
    for (const SProbedOption& option : ProbedOptions())
    {
        const std::int32_t value = Value(option.mKeyword);
        const std::string text = option.mIsSwitch ? (value != 0 ? "ON" : "OFF") : std::to_string(value);
        arguments.push_back(fmt::format("-DAAXADAPTER_{}={}", option.mKeyword, text));
    }
    arguments.push_back(fmt::format("-DAAXADAPTER_{}=ALL", kFeaturesKeyword));
    return arguments;
}

SProductChoice ChooseProduct(const std::filesystem::path& inPlugin, const SProbeResult& inResult,
                             const std::string& inName)
{
    const SPluginFacts& facts = *inResult.mFacts;
    const std::string stem = inPlugin.stem().string();
    SProductChoice choice;
    // The plug-in's plain name is often that of a target of the same build.
    choice.mName = inName.empty() ? Identifier({facts.mName, stem, "Plugin"}) + "Adapter" : inName;
    choice.mSourceVst = inPlugin;
    choice.mEffectId = fmt::format("com.{}.{}", Lowered(Identifier({facts.mVendor, "example"})),
                                   Lowered(Identifier({facts.mName, stem, "plugin"})));
    choice.mManufacturerId = ManufacturerId(facts.mVendor);
    choice.mOptions = ChooseOptions(inResult);
    choice.mFeatures = FeatureUses(facts);
    choice.mCategory = GuessCategory(facts);
    return choice;
}

SExpectation TryProduct(const std::string& inProgram, const std::filesystem::path& inPlugin,
                        const OptionValues& inExpected, bool inLatency, std::chrono::milliseconds inLimit)
{
    const std::int32_t entryVersion = inExpected.at(kEntryVersionKeyword);
    SExpectation expectation;
    const SProbeAttempt attempt = ProbeOnce(inProgram, inPlugin, entryVersion, inLimit);
    if (!attempt.mFacts)
    {
        expectation.mRefusal = attempt.mRefusal;
        if (attempt.mAskedVersion)
            expectation.mRefusal += HelpfulVersion(inProgram, inPlugin, entryVersion, inLimit);
        return expectation;
    }
    SProbeResult result;
    result.mFacts = attempt.mFacts;
    const SProductChoice choice = ChooseProduct(inPlugin, result, "");
    expectation.mWarnings =
        WarningsOf(*attempt.mFacts, inExpected.at(kPortsFromCountsKeyword) != 0, inLatency);
    for (const SProbedOption& option : ProbedOptions())
    {
        const SOptionChoice& best = choice.mOptions.at(option.mKeyword);
        if (option.mRemedy != nullptr && best.mValue != 0 && inExpected.at(option.mKeyword) == 0)
        {
            expectation.mWarnings.push_back(
                fmt::format("{} {} {}.", best.mReason, option.mKeyword, option.mRemedy));
        }
    }
    return expectation;
}
