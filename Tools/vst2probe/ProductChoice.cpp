#include "Tools/vst2probe/ProductChoice.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string_view>

#include <fmt/format.h>

namespace
{
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
                                   name, Quoted(sourceVst.string()), effectId, manufacturerId);
    for (const SProbedOption& option : ProbedOptions())
    {
        if (const std::int32_t value = Value(option.keyword); value != 0)
        {
            call += option.isSwitch ? fmt::format("\n    {}", option.keyword)
                                    : fmt::format("\n    {:<16} {}", option.keyword, value);
        }
    }
    return call + ")";
}

std::vector<std::string> SProductChoice::ConfigureArguments() const
{
    std::vector<std::string> arguments = {
        "-DAAXADAPTER_PRODUCT=" + name, "-DAAXADAPTER_SOURCE_VST=" + sourceVst.string(),
        "-DAAXADAPTER_EFFECT_ID=" + effectId, "-DAAXADAPTER_MANUFACTURER_ID=" + manufacturerId};
    for (const SProbedOption& option : ProbedOptions())
    {
        const std::int32_t value = Value(option.keyword);
        const std::string text = option.isSwitch ? (value != 0 ? "ON" : "OFF") : std::to_string(value);
        arguments.push_back(fmt::format("-DAAXADAPTER_{}={}", option.keyword, text));
    }
    return arguments;
}

SProductChoice ChooseProduct(const std::filesystem::path& inPlugin, const SProbeResult& inResult,
                             const std::string& inName)
{
    const SPluginFacts& facts = *inResult.facts;
    const std::string stem = inPlugin.stem().string();
    SProductChoice choice;
    // The plug-in's plain name is often that of a target of the same build.
    choice.name = inName.empty() ? Identifier({facts.name, stem, "Plugin"}) + "Adapter" : inName;
    choice.sourceVst = inPlugin;
    choice.effectId = fmt::format("com.{}.{}", Lowered(Identifier({facts.vendor, "example"})),
                                  Lowered(Identifier({facts.name, stem, "plugin"})));
    choice.manufacturerId = ManufacturerId(facts.vendor);
    for (const SProbedOption& option : ProbedOptions())
        choice.options[option.keyword] = option.choose(inResult);
    return choice;
}
