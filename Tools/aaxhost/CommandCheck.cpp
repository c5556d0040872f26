#include "Tools/aaxhost/CheckOptions.h"
#include "Tools/aaxhost/CommandOptions.h"
#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/Commands.h"
#include "Tools/aaxhost/check/ExplanationText.h"
#include "Tools/aaxhost/report/CheckReport.h"
#include "Tools/aaxhost/report/JUnitReport.h"
#include "Tools/aaxhost/report/PluginOfModule.h"
#include "Tools/aaxhost/window/CVirtualDisplay.h"
#include "Tools/inspector/FactsReport.h"
#include "Tools/support/CWholeFile.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fmt/format.h>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

namespace
{
enum class ESaid
{
    Findings, // and the verdict
    Results,
    All // also what each check looks at, and what the plug-in alone does
};

struct SCheckOptions
{
    std::vector<std::string> mModules;
    SCheckChoice mChoice;
    bool mList = false;
    std::vector<std::string> mExplain;
    bool mMarkdown = false;
    bool mQuiet = false;
    bool mVerbose = false;
    bool mHere = false;
    std::string mJson;
    std::string mJUnit;
    std::string mReport;

    ESaid Said() const { return mQuiet ? ESaid::Findings : mVerbose ? ESaid::All : ESaid::Results; }
};

constexpr int kNameWidth = 30;

int ListChecks()
{
    std::string_view group;
    for (const SCheck& check : AllChecks())
    {
        if (check.Group() != group)
            fmt::print("{}{}\n", group.empty() ? "" : "\n", check.Group());
        group = check.Group();
        fmt::print("  {:<{}} {:>2}  {}\n", check.mName, kNameWidth, check.mStrictness, check.mDescription);
    }
    return kExitSuccess;
}

int ExplainChecks(const SCheckOptions& inOptions)
{
    const auto patterns = ReadCheckPatterns(inOptions.mExplain);
    if (!patterns)
        return FailUsage(patterns.Problem().mSentence);
    const auto checks = MatchingChecks(*patterns);
    if (inOptions.mMarkdown)
        fmt::print("{}", ExplainedOnPage(checks));
    else
        for (const SCheck* const check : checks)
            fmt::print("{}{}", check == checks.front() ? "" : "\n", ExplainedInWords(*check));
    return kExitSuccess;
}

/** Prints each result as it comes, its group first where it is another one. */
class CResultPrinter
{
public:
    CResultPrinter(std::size_t inTotal, ESaid inSaid) : mProgress(static_cast<double>(inTotal)), mSaid(inSaid)
    {
    }

    void Print(const SCheckResult& inResult)
    {
        mProgress.Hide();
        if (mSaid != ESaid::Findings || inResult.mFault != EFault::None)
            PrintLines(inResult);
        std::fflush(stdout); // as it comes, also into a pipe
        mProgress.Show(static_cast<double>(++mDone));
    }
    void Finish() { mProgress.Hide(); }

private:
    void PrintLines(const SCheckResult& inResult)
    {
        const std::string_view group = inResult.mCheck->Group();
        if (group != mGroup)
            fmt::print("{}{}\n", mGroup.empty() ? "" : "\n", group);
        mGroup = group;
        std::string reason = inResult.mFinding.mReason;
        if (const std::string fault = FaultInWords(inResult); !fault.empty())
            reason += fmt::format(" ({})", fault);
        fmt::print("  {:<8} {:<{}}{}{}\n", NameOfVerdict(inResult.mFinding.mVerdict), inResult.mCheck->mName,
                   reason.empty() ? 0 : kNameWidth, reason.empty() ? "" : " ", reason);
        if (mSaid != ESaid::All)
            return;
        fmt::print("           {} {:.3f} s\n", inResult.mCheck->mDescription, inResult.mSeconds);
        if (inResult.mAlone)
            fmt::print("           The plug-in alone: {}. {}\n", NameOfVerdict(inResult.mAlone->mVerdict),
                       inResult.mAlone->mReason);
    }

    CProgressBar mProgress;
    const ESaid mSaid;
    std::string_view mGroup;
    std::size_t mDone = 0;
};

/** For a debugger, in this process. */
int CheckHere(const SCheckJob& inJob)
{
    if (inJob.mChecks.size() != 1)
        return FailUsage("--in-process takes one check: name it with --only.");
    const SFinding finding = RunCheckHere(*inJob.mChecks.front(), inJob);
    fmt::print("{:<8} {} {}\n", NameOfVerdict(finding.mVerdict), inJob.mChecks.front()->mName,
               finding.mReason);
    return finding.mVerdict == EVerdict::Failed ? kExitFailure : kExitSuccess;
}

SCheckedModule CheckModule(const SCheckJob& inJob, ESaid inSaid)
{
    CResultPrinter printer(inJob.mChecks.size(), inSaid);
    SCheckedModule checked{inJob,
                           RunChecks(inJob, [&](const SCheckResult& result) { printer.Print(result); })};
    printer.Finish();
    return checked;
}

COutcome<SDone> WriteFiles(const SCheckOptions& inOptions, const std::vector<SCheckedModule>& inModules)
{
    const SCheckedModule& first = inModules.front();
    if (!inOptions.mJson.empty())
    {
        const nlohmann::ordered_json plugin =
            ProbeAsJson(ProbePluginOf(first.mJob.mModule, first.mJob.mLimitSeconds));
        if (const auto written =
                WriteText(inOptions.mJson, ResultsAsJson(first.mJob, first.mResults, &plugin));
            !written)
            return written.Problem();
    }
    if (!inOptions.mJUnit.empty())
        if (const auto written = WriteText(inOptions.mJUnit, JUnitReport(inModules)); !written)
            return written.Problem();
    if (!inOptions.mReport.empty())
        if (const auto written = WriteText(inOptions.mReport, ReportPage(first.mJob, first.mResults));
            !written)
            return written.Problem();
    return SDone{};
}

int Check(const SCheckOptions& inOptions)
{
    if (inOptions.mList)
        return ListChecks();
    if (!inOptions.mExplain.empty())
        return ExplainChecks(inOptions);
    if (inOptions.mModules.size() > 1 && !(inOptions.mJson + inOptions.mReport).empty())
        return FailUsage("--json and --report take one module; --junit takes several.");
    for (const std::string& file : {inOptions.mJson, inOptions.mJUnit, inOptions.mReport})
        if (const auto writable = CheckWritable(file); !writable)
            return Fail(writable.Problem());
    CVirtualDisplay display;
    std::vector<SCheckedModule> modules;
    EFitness fitness = EFitness::Fit;
    for (const std::string& module : inOptions.mModules)
    {
        auto job = JobOf(inOptions.mChoice);
        if (!job)
            return FailUsage(job.Problem().mSentence);
        job->mModule = module;
        if (inOptions.mHere)
            return CheckHere(*job);
        StartDisplay(*job, display);
        if (inOptions.mModules.size() > 1)
            fmt::print("{}== {}\n\n", modules.empty() ? "" : "\n", module);
        modules.push_back(CheckModule(*job, inOptions.Said()));
        const auto& results = modules.back().mResults;
        fmt::print("\n{} {}\n", CountsInWords(results), FitnessInWords(results));
        fitness = Worse(fitness, FitnessOf(results));
    }
    if (inOptions.mChoice.mJob.mSeed != 0)
        fmt::print("Seed: {}\n", inOptions.mChoice.mJob.mSeed);
    const auto written = WriteFiles(inOptions, modules);
    return written ? ExitFor(fitness) : Fail(written.Problem());
}
} // namespace

void AddCommandCheck(CLI::App& ioApp, CommandAction& outAction)
{
    auto options = std::make_shared<SCheckOptions>();
    CLI::App* command = ioApp.add_subcommand("check", "Say whether a module is fit to ship");
    command->footer(
        "Each check runs in a process of its own; one that does not pass is repeated with the plug-in "
        "alone, to say whose fault it is. Editors are opened on a display of their own where DISPLAY "
        "names none and Xvfb is installed. Exit code: 0 where the module is fit to ship, 1 where it is "
        "not, 2 for wrong usage, 3 where it could not be told.");
    SCheckJob& job = options->mChoice.mJob;
    CLI::Option* module = command->add_option("MODULE", options->mModules, "Bundle folders or module files");
    AddStrictnessOption(*command, options->mChoice);
    command->add_flag("--list", options->mList, "Name every check with its lowest strictness, and run none");
    CLI::Option* const explain =
        command
            ->add_option("--explain", options->mExplain,
                         "Say what it does, why it matters and how to mend what it finds, and run none; "
                         "as --only")
            ->type_name("CHECK")
            ->allow_extra_args(false);
    command->add_flag("--markdown", options->mMarkdown, "Explain on a page; docs/checks.md is that of '*'")
        ->needs(explain);
    AddSelectionOptions(*command, options->mChoice);
    command->add_option("--jobs", job.mJobs, "Checks that run at a time (1)")
        ->check(WholeNumberFrom(1, 256))
        ->envname("AAXHOST_CHECK_JOBS");
    command
        ->add_option("--repeat", job.mRepeats,
                     "Run each check so often; one that ends otherwise is unstable (1)")
        ->check(WholeNumberFrom(1, 1000))
        ->envname("AAXHOST_CHECK_REPEAT");
    command->add_option("--seed", job.mSeed, "Where all that is chosen by chance begins (0)")
        ->check(WholeNumberFrom(0, 1000000))
        ->envname("AAXHOST_CHECK_SEED");
    command
        ->add_option("--rates", job.mSizes.mRates,
                     "Sample rates in Hz, with commas between, for the checks that go through several; "
                     "otherwise each has its own")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(NumberFrom(1000.0, 1000000.0))
        ->envname("AAXHOST_CHECK_RATES");
    command
        ->add_option("--blocks", job.mSizes.mBlocks,
                     "Sizes of blocks in frames, with commas between, for the checks that go through "
                     "several; otherwise each has its own")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(WholeNumberFrom(1, SRenderCall::kBufferFrames))
        ->envname("AAXHOST_CHECK_BLOCKS");
    AddAnswersOption(*command, job.mAnswers);
    CLI::Option* const quiet =
        command->add_flag("--quiet", options->mQuiet, "Print what did not pass, and the verdict");
    command
        ->add_flag("--verbose", options->mVerbose,
                   "Print what each check looks at, and what the plug-in alone does")
        ->excludes(quiet);
    command->add_flag("--in-process", options->mHere,
                      "For a debugger: run one check in this process, which ends where the plug-in crashes");
    command->add_option("--json", options->mJson, "File to write with the results for a machine")
        ->type_name("FILE");
    command
        ->add_option("--junit", options->mJUnit, "File to write with the results as build servers read them")
        ->type_name("FILE");
    command->add_option("--report", options->mReport, "HTML page to write for a person")->type_name("FILE");
    command->callback(
        [options, module, &outAction]
        {
            if (!options->mList && options->mExplain.empty() && module->count() == 0)
                throw CLI::RequiredError("MODULE");
            outAction = [options] { return Check(*options); };
        });
}
