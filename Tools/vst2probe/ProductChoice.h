#pragma once
#include "Tools/inspector/FeatureUses.h"
#include "Tools/inspector/ProbedOptions.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

/** A product that wraps a plug-in: what goes into its add_aax_adapter() call. */
struct SProductChoice
{
    std::string mName;
    std::filesystem::path mSourceVst; // absolute
    std::string mEffectId;            // a proposal, as is the next
    std::string mManufacturerId;
    OptionChoices mOptions;
    std::vector<SFeatureUse> mFeatures; // all; the product has them all
    std::string mCategory;              // a guess, which is no part of the call; may be empty

    std::int32_t Value(const char* inKeyword) const { return mOptions.at(inKeyword).mValue; }
    /** @return the finished call, in several lines. */
    std::string CmakeCall() const;
    /** @return what chooses this product on the command line of a configuration; options of another choice
     * that the build folder still remembers are set back. */
    std::vector<std::string> ConfigureArguments() const;
};

/** Whether a product may be called that. */
bool IsProductName(const std::string& inName);

/**
 * @param inPlugin absolute path of the plug-in.
 * @param inResult of a plug-in that was not refused.
 * @param inName   the product's name; empty: made from the plug-in's.
 */
SProductChoice ChooseProduct(const std::filesystem::path& inPlugin, const SProbeResult& inResult,
                             const std::string& inName);

/** What came of trying a plug-in with a product's options. */
struct SExpectation
{
    std::string mRefusal;               // empty: it loads; else a part of a sentence, with what would help
    std::vector<std::string> mWarnings; // sentences: it loads, but what it does then is hardly what is wanted
};

/**
 * Tries a plug-in from a child process as a product would load it. Parameters and errors are those of
 * ProbePlugin().
 * @param inExpected the product's options, each of ProbedOptions().
 * @param inLatency  whether it has this feature.
 */
SExpectation TryProduct(const std::string& inProgram, const std::filesystem::path& inPlugin,
                        const OptionValues& inExpected, bool inLatency, std::chrono::milliseconds inLimit);
