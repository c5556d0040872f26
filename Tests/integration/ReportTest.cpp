#include "Tests/integration/ModuleBundle.h"
#include "Tests/integration/ToolRun.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

namespace
{
namespace fs = std::filesystem;

fs::path FaultyPlugin(const std::string& inName)
{
    return fs::path(FAULTY_PLUGINS) / ("faulty_" + inName + ".so");
}

TEST(ReportFacts, CheckSaysTheSameOfAPluginAsTheInspector)
{
    // The last two load only with an answer inside their entry, or not at all.
    for (const fs::path& plugin : {kDelayPlugin, kSynthPlugin, FaultyPlugin("TwoPrograms"),
                                   FaultyPlugin("Demanding"), FaultyPlugin("CrashInOpen")})
    {
        SCOPED_TRACE(plugin);
        const CModuleBundle bundle(kOptionsModule, plugin);
        const std::string file = bundle.Path().parent_path() / "result.json";
        const SToolRun run = RunTool(
            {AAXHOST, "check", bundle.Path().string(), "--only", "description.opens", "--json", file});
        auto told = nlohmann::json::parse(Contents(file)).at("plugin");
        const SToolRun probe = RunTool({VST2PROBE_FILE, bundle.SourceVst().string(), "--json"});
        auto probed = nlohmann::json::parse(probe.mOutput);
        if (probed.contains("error"))
        {
            EXPECT_NE(probed["error"].get<std::string>().find(told.at("refused")), std::string::npos)
                << told << probed;
            continue;
        }
        for (const char* ofTheProduct : {"productName", "cmakeCall", "configureArguments"})
            EXPECT_EQ(probed.erase(ofTheProduct), 1U) << ofTheProduct;
        EXPECT_EQ(told, probed);
        EXPECT_FALSE(told.at("name").get<std::string>().empty());
    }
}

TEST(ReportFacts, OfAModuleThatDoesNotOpenSayThat)
{
    const CModuleBundle bundle(kPlainModule, {});
    const std::string file = bundle.Path().parent_path() / "result.json";
    (void)RunTool({AAXHOST, "check", bundle.Path().string(), "--only", "description.opens", "--json", file});
    EXPECT_EQ(nlohmann::json::parse(Contents(file)).at("plugin").at("refused"),
              "the module that it is in does not open");
}
} // namespace
