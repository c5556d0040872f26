#include "Tests/integration/ModuleBundle.h"
#include "Tests/support/FileContents.h"
#include "Tests/support/ToolRun.h"
#include "Tools/aaxhost/player/CModule.h"
#include "Tools/aaxhost/player/InstanceState.h"
#include "Tools/vst2driver/CDrivenPlugin.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace
{
TEST(Bench, OfSeveralFilesInThePluginTheOneThatTheModuleLoadsIsCompared)
{
    const CModuleBundle bundle(kPlainModule, {});
    const std::filesystem::path folder = bundle.SourceVst() / "Contents" / AAXADAPTER_EXECUTABLE_FOLDER;
    std::filesystem::create_directories(folder);
    // A folder lists its files in no particular order.
    for (const char* name : {"d.so", "b.so", "g.so", "a.so", "e.so", "c.so", "f.so"})
        std::filesystem::copy_file(std::string(name) == "a.so" ? kDelayPlugin : kSynthPlugin, folder / name);
    CHostLog log;
    const auto module = CModule::Open(bundle.Path().string(), log);
    ASSERT_TRUE(module) << module.Problem().mSentence;
    CDrivenPlugin plugin;
    ASSERT_EQ(plugin.Open((*module)->PluginPath(), 48000.0F), "");
    EXPECT_EQ(plugin.Effect().uniqueID, static_cast<std::int32_t>(IdentityOf(**module).mPlugInID));
}

TEST(Bench, AnInstanceTakesNoMoreThan64KilobytesBesideItsPlugin)
{
    const CModuleBundle bundle(kPlainModule, kSynthPlugin);
    const std::string file = bundle.Path().parent_path() / "bench.json";
    const SToolRun run = RunTool(
        {AAXHOST, "bench", bundle.Path().string(), "--json", file, "--turns", "3", "--instances", "8"});
    ASSERT_EQ(run.mExit, 0) << run.mErrors;
    const auto results = nlohmann::json::parse(Contents(file), nullptr, false);
    ASSERT_TRUE(results.is_object());
    if (results["memoryBytes"].is_null())
        GTEST_SKIP() << "the allocator of this build tells nothing";
    const double module = results["memoryBytes"];
    const double bare = results["bareMemoryBytes"];
    EXPECT_GT(module, bare);
    EXPECT_LE(module - bare, 64.0 * 1024.0);
}
} // namespace
