#include "Tests/integration/ModuleBundle.h"
#include "Tests/integration/ToolRun.h"
#include "Tools/aaxhost/bench/InterleavedTimes.h"

#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace
{
using Json = nlohmann::json;

/** `aaxhost bench` over the example synthesizer, or over what the given plug-in is. */
class CBenchRun
{
public:
    explicit CBenchRun(const std::filesystem::path& inPlugin = kSynthPlugin) : mBundle(kPlainModule, inPlugin)
    {
        const auto json = mBundle.Path().parent_path() / "bench.json";
        mRun = RunTool({AAXHOST, "bench", mBundle.Path().string(), "--json", json.string(), "--turns", "3",
                        "--instances", "8"});
        std::ifstream file(json);
        mResults = Json::parse(file, nullptr, false);
    }

    CModuleBundle mBundle;
    SToolRun mRun;
    Json mResults;
};

TEST(Bench, NoFigureIsLeftOutOfWhatTheSynthesizerCosts)
{
    const CBenchRun run;
    ASSERT_EQ(run.mRun.mExit, 0) << run.mRun.mErrors;
    const Json& results = run.mResults;
    // A sanitizer's allocator does not tell how much of it is in use, which is said.
    EXPECT_EQ(results["notes"].size(), results["memoryBytes"].is_null() ? 1U : 0U) << results["notes"];

    ASSERT_EQ(results["blocks"].size(), 7U);
    for (const Json& block : results["blocks"])
    {
        SCOPED_TRACE(block.dump());
        EXPECT_GT(block["moduleMicroseconds"], 0.0);
        EXPECT_GT(block["bareMicroseconds"], 0.0);
        EXPECT_GT(block["ratio"], 0.0);
    }
    // A note sounds in both: 64 times the frames cannot cost less than twice the time, however busy the
    // machine is.
    EXPECT_GT(results["blocks"][6]["bareMicroseconds"],
              2.0 * results["blocks"][0]["bareMicroseconds"].get<double>());
    EXPECT_GT(results["blocks"][6]["moduleMicroseconds"],
              2.0 * results["blocks"][0]["moduleMicroseconds"].get<double>());

    std::vector<int> packets;
    for (const Json& row : results["packets"])
        packets.push_back(row["packets"]);
    EXPECT_EQ(packets, (std::vector<int>{0, 1, 10, 100, 300}));
    std::vector<int> instances;
    for (const Json& row : results["instances"])
        instances.push_back(row["instances"]);
    EXPECT_EQ(instances, (std::vector<int>{1, 8}));
    for (const char* name :
         {"descriptionMilliseconds", "creationMilliseconds", "updateMicroseconds", "coefficientsMicroseconds",
          "stateBytes", "saveMilliseconds", "loadMilliseconds"})
        EXPECT_GT(results[name], 0.0) << name;
}

TEST(Bench, AnInstanceTakesNoMoreThan64KilobytesBesideItsPlugin)
{
    const CBenchRun run;
    ASSERT_EQ(run.mRun.mExit, 0) << run.mRun.mErrors;
    if (run.mResults["memoryBytes"].is_null())
        GTEST_SKIP() << "the allocator of this build tells nothing";
    const double module = run.mResults["memoryBytes"];
    const double bare = run.mResults["bareMemoryBytes"];
    EXPECT_GT(module, bare);
    EXPECT_LE(module - bare, 64.0 * 1024.0);
}

TEST(Bench, FailuresSayWhatIsWrongAndLeaveNoFile)
{
    struct SRow
    {
        std::vector<std::string> mArguments;
        int mExit;
    };
    const CModuleBundle bundle(kPlainModule, kSynthPlugin);
    const std::string module = bundle.Path().string();
    for (const SRow& row :
         {SRow{{}, 2}, SRow{{module, "--turns", "0"}, 2}, SRow{{module, "--instances", "0"}, 2},
          SRow{{module + ".missing"}, 1},
          SRow{{module, "--turns", "1", "--instances", "1", "--json", module + "/no/folder/file"}, 1}})
    {
        std::vector<std::string> command = {AAXHOST, "bench"};
        command.insert(command.end(), row.mArguments.begin(), row.mArguments.end());
        SCOPED_TRACE(::testing::PrintToString(command));
        const SToolRun run = RunTool(command);
        EXPECT_EQ(run.mExit, row.mExit);
        EXPECT_FALSE(run.mErrors.empty());
    }
}

TEST(InterleavedTimes, ADearerCallHasAHigherRatioWhicheverGoesFirst)
{
    const auto work = [](int inSteps)
    {
        return [inSteps]
        {
            volatile std::uint32_t value = 1;
            for (int i = 0; i < inSteps; ++i)
                value = value * 1664525U + 1013904223U;
        };
    };
    EXPECT_GT(MeasureInterleaved(work(100), work(1000), 5).mRatio, 3.0);
    EXPECT_LT(MeasureInterleaved(work(1000), work(100), 5).mRatio, 0.34);
}
} // namespace
