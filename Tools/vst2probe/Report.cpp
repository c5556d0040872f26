#include "Tools/vst2probe/Report.h"

#include "Interfaces/VST2/AEffect.h"
#include "Tools/inspector/FactsReport.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

namespace
{
/** A plug-in's text in one line. */
std::string Shown(std::string inText)
{
    std::ranges::replace_if(
        inText, [](char inByte) { return static_cast<unsigned char>(inByte) < ' '; }, ' ');
    return inText;
}

bool IsBlank(const std::string& inText) { return inText.find_first_not_of(" \t\r\n") == std::string::npos; }

const char* YesNo(bool inValue) { return inValue ? "yes" : "no"; }

std::string Ports(const std::vector<SPortFacts>& inPorts)
{
    constexpr std::size_t maxShown = 8;
    std::vector<std::string> texts;
    for (const SPortFacts& port : inPorts)
    {
        if (texts.size() == maxShown - 1 && inPorts.size() > maxShown)
        {
            texts.push_back(fmt::format("and {} more", inPorts.size() - texts.size()));
            break;
        }
        const char* const format = port.mChannels == 2 ? "stereo" : "mono";
        texts.push_back(port.mLabel.empty() ? format : fmt::format("{} \"{}\"", format, Shown(port.mLabel)));
    }
    return texts.empty() ? "none described" : fmt::format("{}", fmt::join(texts, ", "));
}

std::string Processors(const std::vector<std::string>& inNames)
{
    std::string text = fmt::format("{}", fmt::join(inNames, ", "));
    if (inNames.size() == 1)
        text += " only; a universal product would not load it in a native host on another processor";
    return text;
}

void AddLine(std::string& ioText, const char* inTitle, const std::string& inValue)
{
    fmt::format_to(std::back_inserter(ioText), "  {:<13} {}\n", inTitle, inValue);
}

void AddParametersAndPrograms(std::string& ioText, const SPluginFacts& inFacts)
{
    AddLine(ioText, "parameters", std::to_string(inFacts.mParameters.size()));
    for (std::size_t i = 0; i < inFacts.mParameters.size(); ++i)
    {
        const SParameterFacts& parameter = inFacts.mParameters[i];
        fmt::format_to(std::back_inserter(ioText), "    {:05} {:<24} {} {}\n", i, Shown(parameter.mName),
                       Shown(parameter.mDisplay), Shown(parameter.mUnit));
    }
    const auto blank = std::ranges::count_if(inFacts.mPrograms, &IsBlank);
    AddLine(ioText, "programs",
            blank == 0 ? std::to_string(inFacts.mPrograms.size())
                       : fmt::format("{}, {} of them without a name", inFacts.mPrograms.size(), blank));
    for (std::size_t i = 0; i < inFacts.mPrograms.size(); ++i)
        if (!IsBlank(inFacts.mPrograms[i]))
            fmt::format_to(std::back_inserter(ioText), "    {:5} {}\n", i, Shown(inFacts.mPrograms[i]));
}
} // namespace

std::string TextReport(const SPluginFacts& inFacts, const SProductChoice& inChoice)
{
    std::string text = fmt::format("{} by {}\n", Shown(inFacts.mName), Shown(inFacts.mVendor));
    AddLine(text, "file", inChoice.mSourceVst.string());
    if (!inFacts.mProcessors.empty())
        AddLine(text, "processors", Processors(inFacts.mProcessors));
    AddLine(text, "kind", inFacts.IsInstrument() ? "instrument" : "effect");
    AddLine(text, "unique id", inFacts.UniqueIdText());
    AddLine(text, "version",
            fmt::format("{} (0x{:X}), VST {}", inFacts.mVersion, static_cast<std::uint32_t>(inFacts.mVersion),
                        inFacts.mInterfaceVersion));
    AddLine(text, "channels", fmt::format("{} in, {} out", inFacts.mInputs, inFacts.mOutputs));
    AddLine(text, "input ports", Ports(inFacts.mInputPorts));
    AddLine(text, "output ports", Ports(inFacts.mOutputPorts));
    AddLine(text, "MIDI",
            fmt::format("{} when loaded, {} when opened", YesNo(inFacts.mMidiBeforeOpen),
                        YesNo(inFacts.mMidiAfterOpen)));
    AddLine(text, "latency",
            fmt::format("{} samples when loaded, {} when opened, {} after the first block, {} after some",
                        inFacts.mLatencyWhenLoaded, inFacts.mLatencyAtStart, inFacts.mLatencyAfterFirstBlock,
                        inFacts.mLatencyAfterBlocks));
    AddLine(text, "editor", YesNo(inFacts.HasFlag(effFlagsHasEditor)));
    AddLine(text, "chunk", YesNo(inFacts.HasFlag(effFlagsProgramChunks)));
    AddLine(text, "flags",
            fmt::format("0x{:X} {}", static_cast<std::uint32_t>(inFacts.mFlags),
                        fmt::join(inFacts.FlagNames(), ", ")));
    AddParametersAndPrograms(text, inFacts);

    // The proposed product has every feature.
    const std::vector<std::string> warnings =
        WarningsOf(inFacts, inChoice.Value(kPortsFromCountsKeyword) != 0, true);
    if (!warnings.empty())
        fmt::format_to(std::back_inserter(text), "\nWarnings\n  {}\n", fmt::join(warnings, "\n  "));

    text += "\nProduct options\n";
    for (const SProbedOption& option : ProbedOptions())
    {
        const SOptionChoice& choice = inChoice.mOptions.at(option.mKeyword);
        const std::string value =
            option.mIsSwitch ? YesNo(choice.mValue != 0) : std::to_string(choice.mValue);
        fmt::format_to(std::back_inserter(text), "  {:<17} {:<5} {}\n", option.mKeyword, value,
                       choice.mReason);
    }
    text += "\nFeatures, and whether it makes use of them\n";
    for (const SFeatureUse& feature : inChoice.mFeatures)
        fmt::format_to(std::back_inserter(text), "  {:<17} {:<5} {}\n", feature.mName, YesNo(feature.mIsUsed),
                       feature.mReason);
    return text + "\nThe product, with identifiers to be replaced by the maker's own\n" +
           inChoice.CmakeCall() + "\n";
}

std::string JsonReport(const SPluginFacts& inFacts, const SProductChoice& inChoice)
{
    nlohmann::ordered_json report = FactsAsJson(inFacts, inChoice.mOptions);
    report["productName"] = inChoice.mName;
    report["cmakeCall"] = inChoice.CmakeCall();
    report["configureArguments"] = inChoice.ConfigureArguments();
    return report.dump(4) + "\n";
}
