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
        const SShellRun errors = Vst2probe(plugin, 2);
        EXPECT_EQ(errors.mCode, 1);
        EXPECT_NE(errors.mOutput.find(plugin), std::string::npos);
        EXPECT_EQ(errors.mOutput.find('\n'), errors.mOutput.size() - 1) << errors.mOutput;
        EXPECT_TRUE(errors.mOutput.ends_with(".\n"));
        const auto json = nlohmann::json::parse(Vst2probe(plugin + " --json").mOutput, nullptr, false);
        ASSERT_TRUE(json.is_object());
        EXPECT_EQ(json["error"].get<std::string>() + "\n", errors.mOutput);
    }
}

TEST(ProbeCommand, WrongUsageIsCode2AndHelpCode0)
{
    const std::string plugin = EXAMPLE_SYNTH_FILE;
    for (const std::string& arguments : {std::string(), plugin + " --wrong", plugin + " --name 'a b'",
                                         plugin + " --timeout 0", plugin + " --json --configure-args"})
    {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(Vst2probe(arguments).mCode, 2);
    }
    EXPECT_EQ(Vst2probe("--help").mCode, 0);
}

TEST(ProbeCommand, JsonIsAllThatIsPrintedWhateverThePluginWrites)
{
    const SShellRun run = Vst2probe(Faulty("WriteToOutput") + " --json");
    EXPECT_EQ(run.mCode, 0);
    const auto json = nlohmann::json::parse(run.mOutput, nullptr, false);
    ASSERT_TRUE(json.is_object()) << run.mOutput;
    EXPECT_EQ(json["name"], "Faulty");
    // Scripts pick it with a line editor.
    EXPECT_NE(run.mOutput.find("\n    \"kind\": \"effect\",\n"), std::string::npos);
}

TEST(ProbeCommand, ConfigureArgumentsAreLinesAndTheNameIsTheOneGiven)
{
    const SShellRun run = Vst2probe(Faulty("Demanding") + " --configure-args --name My-Product_2");
    EXPECT_EQ(run.mCode, 0);
    EXPECT_TRUE(run.mOutput.starts_with("-DAAXADAPTER_PRODUCT=My-Product_2\n-DAAXADAPTER_SOURCE_VST=/"));
    EXPECT_TRUE(run.mOutput.ends_with("-DAAXADAPTER_ENTRY_VERSION=2400\n-DAAXADAPTER_PORTS_FROM_COUNTS=ON\n"
                                      "-DAAXADAPTER_MIDI_INPUT=ON\n"
                                      "-DAAXADAPTER_FEATURES=ALL\n"));
}
} // namespace
