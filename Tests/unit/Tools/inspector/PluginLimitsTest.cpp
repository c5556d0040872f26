#include "Tools/inspector/PluginLimits.h"
#include "Interfaces/VST2/AEffect.h"
#include "Source/plugins/ProductFeatures.h"
#include "Tools/inspector/FeatureUses.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace
{
struct SDocumentedLimit
{
    std::string mHow;
    std::string mLiftedBy;
};

/** The rows of the page by their first cell, without the marks of code. */
std::map<std::string, SDocumentedLimit> DocumentedLimits()
{
    std::map<std::string, SDocumentedLimit> limits;
    std::ifstream file(std::string(AAXADAPTER_SOURCE_DIR) + "/docs/limits.md");
    for (std::string line; std::getline(file, line);)
    {
        std::erase(line, '`');
        std::vector<std::string> cells;
        std::istringstream stream(line);
        for (std::string cell; std::getline(stream, cell, '|');)
        {
            const auto begin = cell.find_first_not_of(' ');
            cells.push_back(
                begin == std::string::npos ? "" : cell.substr(begin, cell.find_last_not_of(' ') + 1 - begin));
        }
        // The first is what stands ahead of the line's first bar; two lines are the head.
        if (cells.size() == 6 && cells[3] != "how, or why not" && !cells[1].starts_with('-'))
            limits[cells[1]] = {cells[3], cells[4].substr(0, cells[4].find(','))};
    }
    return limits;
}

/** A plug-in that makes use of everything. */
SPluginFacts EverythingUsed()
{
    SPluginFacts facts;
    facts.mLatencyAfterBlocks = 64;
    facts.mFlags = effFlagsHasEditor | effFlagsProgramChunks;
    facts.mPrograms = {"One", "Two"};
    facts.mOutputs = 70;
    facts.mOutputPorts.resize(34);
    facts.mInputs = 2; // without a port
    facts.mParameters.resize(1);
    facts.mMidiAfterOpen = facts.mSendsMidi = facts.mDescribesParameters = true;
    facts.mAsksTime = facts.mAsksAboutHost = facts.mAsksIdle = true;
    return facts;
}

std::vector<std::string> NamesOf(const SPluginFacts& inFacts)
{
    std::vector<std::string> names;
    for (const SPluginLimit& limit : LimitsOf(inFacts))
        names.emplace_back(limit.mWhat);
    return names;
}

TEST(FeatureUses, AreAllOfAPluginThatMakesUseOfEverythingAndElseNone)
{
    std::vector<std::string> used;
    for (const SFeatureUse& use : FeatureUses(EverythingUsed()))
        if (use.mIsUsed)
            used.emplace_back(use.mName);
    EXPECT_EQ(used,
              std::vector<std::string>(std::begin(kProductFeatureNames), std::end(kProductFeatureNames)));
    EXPECT_TRUE(std::ranges::none_of(FeatureUses({}), &SFeatureUse::mIsUsed));
}

TEST(PluginLimits, AreThoseOfThePageWithItsWords)
{
    const auto documented = DocumentedLimits();
    ASSERT_GT(documented.size(), 40U);
    std::vector<SPluginLimit> limits = LimitsOf(EverythingUsed());
    SPluginFacts other;
    other.mPortListCut = true;
    other.mPrograms = {"One", "Two"};
    const auto others = LimitsOf(other);
    limits.insert(limits.end(), others.begin(), others.end());
    std::size_t lifted = 0;
    for (const SPluginLimit& limit : limits)
    {
        SCOPED_TRACE(limit.mWhat);
        ASSERT_TRUE(documented.contains(limit.mWhat));
        const SDocumentedLimit& row = documented.at(limit.mWhat);
        EXPECT_EQ(limit.mHow, row.mHow);
        EXPECT_EQ(limit.mIsOption ? "" : limit.mLiftedBy, row.mLiftedBy);
        EXPECT_FALSE(limit.mReason.empty());
    }
    const auto all = NamesOf(EverythingUsed());
    for (const auto& [name, row] : documented)
        if (!row.mLiftedBy.empty())
        {
            ++lifted;
            EXPECT_EQ(std::ranges::count(all, name), 1) << name << " is not told of";
        }
    EXPECT_GT(lifted, 15U);
}

TEST(PluginLimits, ConcernThePluginsThatDoWhatDoesNotCross)
{
    struct SRow
    {
        const char* mLimit;
        const char* mLiftedBy;
        void (*mChange)(SPluginFacts&);
    };
    const SRow rows[] = {
        {"Auxiliary outputs", "", [](SPluginFacts& out) { out.mOutputPorts.resize(34); }},
        {"Ports of more than two channels", "", [](SPluginFacts& out) { out.mPortListCut = true; }},
        {"Ports of a plug-in that describes no pins", "PORTS_FROM_COUNTS",
         [](SPluginFacts& out) { out.mInputs = 2; }},
        {"MIDI input of a plug-in that asks for it late", "MIDI_INPUT",
         [](SPluginFacts& out) { out.mMidiAfterOpen = true; }},
        {"State without a chunk", "", [](SPluginFacts& out) { out.mPrograms.resize(2); }},
        {"Latency", "LATENCY", [](SPluginFacts& out) { out.mLatencyAfterBlocks = 1; }},
        {"Tempo, position, playing", "TIME", [](SPluginFacts& out) { out.mAsksTime = true; }},
    };
    EXPECT_TRUE(LimitsOf({}).empty());
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.mLimit);
        SPluginFacts facts;
        row.mChange(facts);
        const auto limits = LimitsOf(facts);
        const auto found = std::ranges::find(limits, std::string(row.mLimit), &SPluginLimit::mWhat);
        ASSERT_NE(found, limits.end());
        EXPECT_STREQ(found->mLiftedBy, row.mLiftedBy);
    }
}
} // namespace
