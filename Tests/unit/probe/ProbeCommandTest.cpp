#include "Tests/unit/probe/RunProbe.h"

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
        const SRun errors = Vst2probe(plugin, 2);
        EXPECT_EQ(errors.code, 1);
        EXPECT_NE(errors.output.find(plugin), std::string::npos);
        EXPECT_EQ(errors.output.find('\n'), errors.output.size() - 1) << errors.output;
        EXPECT_TRUE(errors.output.ends_with(".\n"));
        const auto json = nlohmann::json::parse(Vst2probe(plugin + " --json").output, nullptr, false);
        ASSERT_TRUE(json.is_object());
        EXPECT_EQ(json["error"].get<std::string>() + "\n", errors.output);
    }
}

TEST(ProbeCommand, WrongUsageIsCode2AndHelpCode0)
{
    const std::string plugin = EXAMPLE_SYNTH_FILE;
    for (const std::string& arguments : {std::string(), plugin + " --wrong", plugin + " --name 'a b'",
                                         plugin + " --timeout 0", plugin + " --json --configure-args"})
    {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(Vst2probe(arguments).code, 2);
    }
    EXPECT_EQ(Vst2probe("--help").code, 0);
}

TEST(ProbeCommand, JsonIsAllThatIsPrintedWhateverThePluginWrites)
{
    const SRun run = Vst2probe(Faulty("WriteToOutput") + " --json");
    EXPECT_EQ(run.code, 0);
    const auto json = nlohmann::json::parse(run.output, nullptr, false);
    ASSERT_TRUE(json.is_object()) << run.output;
    EXPECT_EQ(json["name"], "Faulty");
    // Scripts pick it with a line editor.
    EXPECT_NE(run.output.find("\n    \"kind\": \"effect\",\n"), std::string::npos);
}

TEST(ProbeCommand, ConfigureArgumentsAreLinesAndTheNameIsTheOneGiven)
{
    const SRun run = Vst2probe(Faulty("Demanding") + " --configure-args --name My-Product_2");
    EXPECT_EQ(run.code, 0);
    EXPECT_TRUE(run.output.starts_with("-DAAXADAPTER_PRODUCT=My-Product_2\n-DAAXADAPTER_SOURCE_VST=/"));
    EXPECT_TRUE(run.output.ends_with("-DAAXADAPTER_ENTRY_VERSION=2400\n-DAAXADAPTER_PORTS_FROM_COUNTS=ON\n"
                                     "-DAAXADAPTER_MIDI_INPUT=ON\n"
                                     "-DAAXADAPTER_FEATURES=ALL\n"));
}
} // namespace
