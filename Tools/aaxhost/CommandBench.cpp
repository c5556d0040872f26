#include "Tools/aaxhost/CommandOptions.h"
#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/Commands.h"
#include "Tools/aaxhost/bench/ModuleBench.h"
#include "Tools/support/CStage.h"
#include "Tools/support/CWholeFile.h"

#include <fmt/format.h>
#include <memory>

namespace
{
struct SBenchOptions
{
    SBenchJob mJob;
    std::string mJson;
};

int Bench(const SBenchOptions& inOptions)
{
    if (const auto writable = CheckWritable(inOptions.mJson); !writable)
        return Fail(writable.Problem());
    CProgressBar progress(1.0);
    const CStage stage("its calls were measured");
    const auto results = MeasureModule(inOptions.mJob, [&](double inDone) { progress.Show(inDone); });
    progress.Hide();
    if (!results)
        return Fail(results.Problem());
    if (!inOptions.mJson.empty())
        if (const auto written = WriteText(inOptions.mJson, BenchAsJson(*results)); !written)
            return Fail(written.Problem());
    fmt::print("{}", BenchAsText(*results));
    return kExitSuccess;
}
} // namespace

void AddCommandBench(CLI::App& ioApp, CommandAction& outAction)
{
    auto options = std::make_shared<SBenchOptions>();
    CLI::App* command = ioApp.add_subcommand("bench", "Measure what a module costs beside its plug-in");
    command->add_option("MODULE", options->mJob.mModule, "Bundle folder or module file")->required();
    command->add_option("--json", options->mJson, "File to write with the figures for a machine")
        ->type_name("FILE");
    command->add_option("--instances", options->mJob.mMostInstances, "Most instances at once (512)")
        ->check(WholeNumberFrom(1, 4096));
    command->add_option("--turns", options->mJob.mTurns, "How often each time is taken (101)")
        ->check(WholeNumberFrom(1, 100000));
    AddAnswersOption(*command, options->mJob.mAnswers);
    command->callback([options, &outAction] { outAction = [options] { return Bench(*options); }; });
}
