#include "Tools/vst2probe/ProductChoice.h"
#include "Interfaces/VST2/AEffect.h"
#include "Tools/vst2probe/CategoryGuess.h"
#include "Tools/vst2probe/Report.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace
{
SProbeResult Described()
{
    SProbeResult result;
    result.mFacts.emplace();
    result.mFacts->mName = "Big Reverb II";
    result.mFacts->mVendor = "M\xC3\xB6lk & Sons";
    result.mFacts->mInputs = 2;
    result.mFacts->mOutputs = 2;
    result.mFacts->mInputPorts = {{"In", 2}};
    result.mFacts->mOutputPorts = {{"Out", 2}};
    return result;
}

TEST(ProductChoice, OptionsFollowFromWhatWasSeen)
{
    struct SRow
    {
        const char* mName;
        void (*mChange)(SProbeResult&);
        std::int32_t mEntryVersion;
        bool mPortsFromCounts;
        bool mMidiInput;
    };
    const SRow rows[] = {
        {"all well", [](SProbeResult&) {}, 0, false, false},
        {"takes 0", [](SProbeResult& out) { out.mAskedVersion = true; }, 0, false, false},
        {"refuses 0", [](SProbeResult& out) { out.mEntryVersion = 2400; }, 2400, false, false},
        {"no output pins", [](SProbeResult& out) { out.mFacts->mOutputPorts.clear(); }, 0, true, false},
        {"no input pins", [](SProbeResult& out) { out.mFacts->mInputPorts.clear(); }, 0, true, false},
        {"no inputs at all",
         [](SProbeResult& out)
         {
             out.mFacts->mInputs = 0;
             out.mFacts->mInputPorts.clear();
         },
         0, false, false},
        {"speaker pin",
         [](SProbeResult& out)
         {
             out.mFacts->mPortListCut = true;
             out.mFacts->mOutputPorts.clear();
         },
         0, true, false},
        {"speaker pin behind others", [](SProbeResult& out) { out.mFacts->mPortListCut = true; }, 0, false,
         false},
        {"MIDI late", [](SProbeResult& out) { out.mFacts->mMidiAfterOpen = true; }, 0, false, true},
        {"MIDI in time",
         [](SProbeResult& out) { out.mFacts->mMidiBeforeOpen = out.mFacts->mMidiAfterOpen = true; }, 0, false,
         false},
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.mName);
        SProbeResult result = Described();
        row.mChange(result);
        const SProductChoice choice = ChooseProduct("/a/Reverb.so", result, "");
        EXPECT_EQ(choice.Value("ENTRY_VERSION"), row.mEntryVersion);
        EXPECT_EQ(choice.Value("PORTS_FROM_COUNTS"), row.mPortsFromCounts);
        EXPECT_EQ(choice.Value("MIDI_INPUT"), row.mMidiInput);
    }
}

TEST(ProductChoice, TheCallIsFinishedAndQuotesWhatCmakeWouldMisread)
{
    SProbeResult result = Described();
    result.mEntryVersion = 2400;
    result.mFacts->mOutputPorts.clear();
    result.mFacts->mMidiAfterOpen = true;
    EXPECT_EQ(ChooseProduct("/a b/$Re\"verb;.so", result, "Mine").CmakeCall(),
              "add_aax_adapter(Mine\n"
              "    SOURCE_VST       \"/a b/\\$Re\\\"verb;.so\"\n"
              "    EFFECT_ID        com.mlksons.bigreverbii\n"
              "    MANUFACTURER_ID  Mlks\n"
              "    ENTRY_VERSION    2400\n"
              "    PORTS_FROM_COUNTS\n"
              "    MIDI_INPUT\n"
              "    # CATEGORY       reverb\n"
              "    FEATURES         ALL)");
}

TEST(ProductChoice, TheCategoryIsGuessedByWhatItIsAndThenByItsName)
{
    SPluginFacts facts;
    for (const auto& [kind, name, guess] : {std::tuple(1, "Tape ECHO", "delay"),
                                            {2, "Tape Echo", "instrument"},
                                            {6, "Box", "reverb"},
                                            {0, "Comp EQ", "dynamics"},
                                            {1, "Box", ""}})
    {
        facts.mKind = kind;
        facts.mName = name;
        EXPECT_EQ(GuessCategory(facts), guess) << name;
    }
}

TEST(ProductChoice, ConfigureArgumentsSetBackWhatAnEarlierProductLeft)
{
    EXPECT_EQ(ChooseProduct("/a/Reverb.so", Described(), "").ConfigureArguments(),
              (std::vector<std::string>{
                  "-DAAXADAPTER_PRODUCT=BigReverbIIAdapter", "-DAAXADAPTER_SOURCE_VST=/a/Reverb.so",
                  "-DAAXADAPTER_EFFECT_ID=com.mlksons.bigreverbii", "-DAAXADAPTER_MANUFACTURER_ID=Mlks",
                  "-DAAXADAPTER_ENTRY_VERSION=0", "-DAAXADAPTER_PORTS_FROM_COUNTS=OFF",
                  "-DAAXADAPTER_MIDI_INPUT=OFF", "-DAAXADAPTER_FEATURES=ALL"}));
}

TEST(ProductChoice, APluginWithoutAnyUsableNameStillGetsOne)
{
    SProbeResult result = Described();
    result.mFacts->mName = "\xE9\x9F\xB3";
    result.mFacts->mVendor.clear();
    const SProductChoice choice = ChooseProduct("/a/---.so", result, "");
    EXPECT_TRUE(IsProductName(choice.mName)) << choice.mName;
    EXPECT_EQ(choice.mEffectId, "com.example.plugin");
    EXPECT_EQ(choice.mManufacturerId, "Make");
}

TEST(Report, JsonGivesBackTheFacts)
{
    SProbeResult result = Described();
    result.mFacts->mName = "Two\nlines";
    result.mFacts->mFlags = effFlagsIsSynth | effFlagsProgramChunks;
    result.mFacts->mParameters = {{"Gain", "dB", "-6.0", 0.25F}};
    result.mFacts->mPrograms = {"One", "Two"};
    const SProductChoice choice = ChooseProduct("/a/Reverb.so", result, "");
    const auto json = nlohmann::ordered_json::parse(JsonReport(*result.mFacts, choice));
    const auto again = json.get<SPluginFacts>();
    EXPECT_EQ(JsonReport(again, choice), JsonReport(*result.mFacts, choice));
    EXPECT_EQ(json["kind"], "instrument");
    EXPECT_EQ(json["options"]["PORTS_FROM_COUNTS"]["value"], false);
}

TEST(Report, APluginForOneProcessorOfTwoIsNotForUniversalProducts)
{
    SPluginFacts facts;
    SProductChoice choice;
    for (const SProbedOption& option : ProbedOptions())
        choice.mOptions[option.mKeyword] = {};
    const std::string said = "a universal product would not load it in a native host";
    EXPECT_EQ(TextReport(facts, choice).find("processors"),
              std::string::npos); // of a file for another system
    facts.mProcessors = {"x86_64"};
    EXPECT_NE(TextReport(facts, choice).find("processors    x86_64 only; " + said), std::string::npos);
    facts.mProcessors = {"x86_64", "arm64"};
    EXPECT_NE(TextReport(facts, choice).find("processors    x86_64, arm64\n"), std::string::npos);
}
} // namespace
