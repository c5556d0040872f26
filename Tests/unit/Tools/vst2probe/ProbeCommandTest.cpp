#include "Tests/unit/Tools/vst2probe/RunProbe.h"

#include <gtest/gtest.h>

#include <string>

#include <nlohmann/json.hpp>

namespace
{
TEST(ProbeCommand, ARefusalIsOneSentenceOnTheErrorStreamAndCode1)
{
    for (const std::string& plugin :
         {Faulty("ReturnNull"), Faulty("CrashInOpen"), std::string("/nowhere/at/all.so")})
    {
        SCOPED_TRACE(plugin);
        const SToolRun run = Vst2probe(plugin);
        EXPECT_EQ(run.mExit, 1);
        EXPECT_NE(run.mErrors.find(plugin), std::string::npos);
        EXPECT_EQ(run.mErrors.find('\n'), run.mErrors.size() - 1) << run.mErrors;
        EXPECT_TRUE(run.mErrors.ends_with(".\n"));
        const auto json = nlohmann::json::parse(Vst2probe(plugin + " --json").mOutput, nullptr, false);
        ASSERT_TRUE(json.is_object());
        EXPECT_EQ(json["error"].get<std::string>() + "\n", run.mErrors);
    }
}

TEST(ProbeCommand, WrongUsageIsCode2AndHelpCode0)
{
    const std::string plugin = EXAMPLE_SYNTH_FILE;
    for (const std::string& arguments : {std::string(), plugin + " --wrong", plugin + " --name 'a b'",
                                         plugin + " --timeout 0", plugin + " --json --configure-args"})
    {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(Vst2probe(arguments).mExit, 2);
    }
    EXPECT_EQ(Vst2probe("--help").mExit, 0);
}

TEST(ProbeCommand, JsonIsAllThatIsPrintedWhateverThePluginWrites)
{
    const SToolRun run = Vst2probe(Faulty("WriteToOutput") + " --json");
    EXPECT_EQ(run.mExit, 0);
    const auto json = nlohmann::json::parse(run.mOutput, nullptr, false);
    ASSERT_TRUE(json.is_object()) << run.mOutput;
    EXPECT_EQ(json["name"], "Faulty");
    // Scripts pick it with a line editor.
    EXPECT_NE(run.mOutput.find("\n    \"kind\": \"effect\",\n"), std::string::npos);
}

TEST(ProbeCommand, ConfigureArgumentsAreLinesAndTheNameIsTheOneGiven)
{
    const SToolRun run = Vst2probe(Faulty("Demanding") + " --configure-args --name My-Product_2");
    EXPECT_EQ(run.mExit, 0);
    EXPECT_TRUE(run.mOutput.starts_with("-DAAXADAPTER_PRODUCT=My-Product_2\n-DAAXADAPTER_SOURCE_VST=/"));
    EXPECT_TRUE(run.mOutput.ends_with("-DAAXADAPTER_ENTRY_VERSION=2400\n-DAAXADAPTER_PORTS_FROM_COUNTS=ON\n"
                                      "-DAAXADAPTER_MIDI_INPUT=ON\n"
                                      "-DAAXADAPTER_FEATURES=ALL\n"));
}
} // namespace
