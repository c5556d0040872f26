#include "Tests/integration/ModuleBundle.h"
#include "Tests/integration/ToolRun.h"

#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace
{
TEST(Bench, AnInstanceTakesNoMoreThan64KilobytesBesideItsPlugin)
{
    const CModuleBundle bundle(kPlainModule, kSynthPlugin);
    const std::string file = bundle.Path().parent_path() / "bench.json";
    const SToolRun run = RunTool(
        {AAXHOST, "bench", bundle.Path().string(), "--json", file, "--turns", "3", "--instances", "8"});
    ASSERT_EQ(run.mExit, 0) << run.mErrors;
    std::ifstream stream(file);
    const auto results = nlohmann::json::parse(stream, nullptr, false);
    ASSERT_TRUE(results.is_object());
    if (results["memoryBytes"].is_null())
        GTEST_SKIP() << "the allocator of this build tells nothing";
    const double module = results["memoryBytes"];
    const double bare = results["bareMemoryBytes"];
    EXPECT_GT(module, bare);
    EXPECT_LE(module - bare, 64.0 * 1024.0);
}
} // namespace
