#include "Tools/aaxhost/CommandOptions.h"
#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/Commands.h"
#include "Tools/aaxhost/check/CheckSummary.h"
#include "Tools/aaxhost/report/CheckReport.h"
#include "Tools/aaxhost/window/CVirtualDisplay.h"
#include "Tools/support/CWholeFile.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fmt/format.h>
#include <memory>
#include <optional>

namespace
{
struct SCheckOptions
{
    std::string mModule;
    int mStrictness = 5;
    bool mList = false;
    std::vector<std::string> mOnly;
    double mLimit = 0.0; // seconds; 0: as the strictness has it
    EAnswers mAnswers = EAnswers::Late;
    std::string mJson;
    std::string mReport;
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

/** Prints each result as it comes, its group first where it is another one. */
class CResultPrinter
{
public:
    explicit CResultPrinter(std::size_t inTotal) : mProgress(static_cast<double>(inTotal)) {}

    void Print(const SCheckResult& inResult)
    {
        mProgress.Hide();
        const std::string_view group = inResult.mCheck->Group();
        if (group != mGroup)
            fmt::print("{}{}\n", mGroup.empty() ? "" : "\n", group);
        mGroup = group;
        std::string reason = inResult.mFinding.mReason;
        if (const std::string fault = FaultInWords(inResult); !fault.empty())
            reason += fmt::format(" ({})", fault);
        fmt::print("  {:<8} {:<{}}{}{}\n", NameOfVerdict(inResult.mFinding.mVerdict), inResult.mCheck->mName,
                   reason.empty() ? 0 : kNameWidth, reason.empty() ? "" : " ", reason);
        std::fflush(stdout); // as it comes, also into a pipe
        mProgress.Show(static_cast<double>(++mDone));
    }
    void Finish() { mProgress.Hide(); }

private:
    CProgressBar mProgress;
    std::string_view mGroup;
    std::size_t mDone = 0;
};

int ExitFor(EFitness inFitness)
{
    switch (inFitness)
    {
    case EFitness::Fit: return kExitSuccess;
    case EFitness::NotFit: return kExitFailure;
    case EFitness::Unknown: break;
    }
    return kExitUnknown;
}

/** For the editors, where there is none and one can be had. */
void StartDisplay(const SCheckJob& inJob, CVirtualDisplay& ioDisplay)
{
    const bool isWanted =
        std::ranges::any_of(inJob.mChecks, [](const SCheck* check)
                            { return check->Group() == "editor" || check->Group() == "features"; });
    if (!isWanted || std::getenv("DISPLAY") != nullptr || !CVirtualDisplay::IsInstalled())
        return;
    if (const std::string problem = ioDisplay.Start(); !problem.empty())
        fmt::print(stderr, "Editors cannot be looked at: {}.\n", problem);
}

int Check(const SCheckOptions& inOptions)
{
    if (inOptions.mList)
        return ListChecks();
    for (const std::string& file : {inOptions.mJson, inOptions.mReport})
        if (const auto writable = CheckWritable(file); !writable)
            return Fail(writable.Problem());
    SCheckJob job{inOptions.mModule, inOptions.mStrictness, {}, inOptions.mLimit, inOptions.mAnswers};
    if (inOptions.mOnly.empty())
        job.mChecks = ChecksFor(inOptions.mStrictness);
    for (const SCheck& check : AllChecks()) // in their own order, each once
        if (std::ranges::find(inOptions.mOnly, check.mName) != inOptions.mOnly.end())
            job.mChecks.push_back(&check);

    CVirtualDisplay display;
    StartDisplay(job, display);
    CResultPrinter printer(job.mChecks.size());
    const auto results = RunChecks(job, [&](const SCheckResult& result) { printer.Print(result); });
    printer.Finish();
    if (!inOptions.mJson.empty())
        if (const auto written = WriteText(inOptions.mJson, ResultsAsJson(job, results)); !written)
            return Fail(written.Problem());
    if (!inOptions.mReport.empty())
        if (const auto written = WriteText(inOptions.mReport, ReportPage(job, results)); !written)
            return Fail(written.Problem());
    fmt::print("\n{} {}\n", CountsInWords(results), FitnessInWords(results));
    return ExitFor(FitnessOf(results));
}

CLI::Validator CheckName()
{
    const auto check = [](const std::string& text)
    {
        return FindCheck(text) != nullptr
                   ? std::string()
                   : fmt::format("There is no check '{}'; --list names them all.", text);
    };
    return CLI::Validator(check, "");
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
    CLI::Option* module = command->add_option("MODULE", options->mModule, "Bundle folder or module file");
    command
        ->add_option("--strictness", options->mStrictness,
                     "1, done in seconds, to 10, which takes minutes (5)")
        ->check(WholeNumberFrom(kLowestStrictness, kHighestStrictness));
    command->add_flag("--list", options->mList, "Name every check with its lowest strictness, and run none");
    command->add_option("--only", options->mOnly, "NAME: run this check only, whatever its strictness")
        ->allow_extra_args(false)
        ->check(CheckName());
    command
        ->add_option("--limit", options->mLimit, "Seconds that a check may take; otherwise by the strictness")
        ->check(NumberFrom(0.1, 86400.0));
    AddAnswersOption(*command, options->mAnswers);
    command->add_option("--json", options->mJson, "File to write with the results for a machine");
    command->add_option("--report", options->mReport, "HTML page to write for a person");
    command->callback(
        [options, module, &outAction]
        {
            if (!options->mList && module->count() == 0)
                throw CLI::RequiredError("MODULE");
            outAction = [options] { return Check(*options); };
        });
}
