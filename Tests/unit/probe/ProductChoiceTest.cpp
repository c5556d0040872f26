#include "Tools/vst2probe/ProductChoice.h"
#include "Interfaces/VST2/AEffect.h"
#include "Source/plugins/ProductFeatures.h"
#include "Tools/vst2probe/Report.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace
{
SProbeResult Described()
{
    SProbeResult result;
    result.facts.emplace();
    result.facts->name = "Big Reverb II";
    result.facts->vendor = "M\xC3\xB6lk & Sons";
    result.facts->inputs = 2;
    result.facts->outputs = 2;
    result.facts->inputPorts = {{"In", 2}};
    result.facts->outputPorts = {{"Out", 2}};
    return result;
}

TEST(ProductChoice, OptionsFollowFromWhatWasSeen)
{
    struct SRow
    {
        const char* name;
        void (*change)(SProbeResult&);
        std::int32_t entryVersion;
        bool portsFromCounts;
        bool midiInput;
    };
    const SRow rows[] = {
        {"all well", [](SProbeResult&) {}, 0, false, false},
        {"takes 0", [](SProbeResult& out) { out.askedVersion = true; }, 0, false, false},
        {"refuses 0", [](SProbeResult& out) { out.entryVersion = 2400; }, 2400, false, false},
        {"no output pins", [](SProbeResult& out) { out.facts->outputPorts.clear(); }, 0, true, false},
        {"no input pins", [](SProbeResult& out) { out.facts->inputPorts.clear(); }, 0, true, false},
        {"no inputs at all",
         [](SProbeResult& out)
         {
             out.facts->inputs = 0;
             out.facts->inputPorts.clear();
         },
         0, false, false},
        {"speaker pin",
         [](SProbeResult& out)
         {
             out.facts->portListCut = true;
             out.facts->outputPorts.clear();
         },
         0, true, false},
        {"speaker pin behind others", [](SProbeResult& out) { out.facts->portListCut = true; }, 0, false,
         false},
        {"MIDI late", [](SProbeResult& out) { out.facts->midiAfterOpen = true; }, 0, false, true},
        {"MIDI in time",
         [](SProbeResult& out) { out.facts->midiBeforeOpen = out.facts->midiAfterOpen = true; }, 0, false,
         false},
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.name);
        SProbeResult result = Described();
        row.change(result);
        const SProductChoice choice = ChooseProduct("/a/Reverb.so", result, "");
        EXPECT_EQ(choice.Value("ENTRY_VERSION"), row.entryVersion);
        EXPECT_EQ(choice.Value("PORTS_FROM_COUNTS"), row.portsFromCounts);
        EXPECT_EQ(choice.Value("MIDI_INPUT"), row.midiInput);
    }
}

TEST(ProductChoice, EachFeatureIsUsedForAReason)
{
    SPluginFacts facts;
    const auto used = [&]
    {
        std::vector<std::string> names;
        for (const SFeatureUse& use : FeatureUses(facts))
            if (use.isUsed)
                names.emplace_back(use.name);
        return names;
    };
    EXPECT_EQ(used(), std::vector<std::string>());
    facts.latencyAfterBlocks = 64;
    facts.flags = effFlagsHasEditor | effFlagsProgramChunks;
    facts.programs = {"One", "Two"};
    facts.outputPorts.resize(2);
    facts.parameters.resize(1);
    facts.midiAfterOpen = facts.sendsMidi = facts.asksTime = facts.asksAboutHost = facts.asksIdle = true;
    EXPECT_EQ(used(),
              std::vector<std::string>(std::begin(kProductFeatureNames), std::end(kProductFeatureNames)));
}

TEST(ProductChoice, TheCallIsFinishedAndQuotesWhatCmakeWouldMisread)
{
    SProbeResult result = Described();
    result.entryVersion = 2400;
    result.facts->outputPorts.clear();
    result.facts->midiAfterOpen = true;
    EXPECT_EQ(ChooseProduct("/a b/$Re\"verb;.so", result, "Mine").CmakeCall(),
              "add_aax_adapter(Mine\n"
              "    SOURCE_VST       \"/a b/\\$Re\\\"verb;.so\"\n"
              "    EFFECT_ID        com.mlksons.bigreverbii\n"
              "    MANUFACTURER_ID  Mlks\n"
              "    ENTRY_VERSION    2400\n"
              "    PORTS_FROM_COUNTS\n"
              "    MIDI_INPUT\n"
              "    FEATURES         ALL)");
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
    result.facts->name = "\xE9\x9F\xB3";
    result.facts->vendor.clear();
    const SProductChoice choice = ChooseProduct("/a/---.so", result, "");
    EXPECT_TRUE(IsProductName(choice.name)) << choice.name;
    EXPECT_EQ(choice.effectId, "com.example.plugin");
    EXPECT_EQ(choice.manufacturerId, "Make");
}

TEST(Report, JsonGivesBackTheFacts)
{
    SProbeResult result = Described();
    result.facts->name = "Two\nlines";
    result.facts->flags = effFlagsIsSynth | effFlagsProgramChunks;
    result.facts->parameters = {{"Gain", "dB", "-6.0", 0.25F}};
    result.facts->programs = {"One", "Two"};
    const SProductChoice choice = ChooseProduct("/a/Reverb.so", result, "");
    const auto json = nlohmann::ordered_json::parse(JsonReport(*result.facts, choice));
    const auto again = json.get<SPluginFacts>();
    EXPECT_EQ(JsonReport(again, choice), JsonReport(*result.facts, choice));
    EXPECT_EQ(json["kind"], "instrument");
    EXPECT_EQ(json["options"]["PORTS_FROM_COUNTS"]["value"], false);
}
} // namespace
