#include "Tools/aaxhost/CheckOptions.h"
#include "Tools/aaxhost/CommandOptions.h"
#include "Tools/aaxhost/CommandSupport.h"
#include "Tools/aaxhost/Commands.h"
#include "Tools/aaxhost/survey/SurveyPage.h"
#include "Tools/aaxhost/survey/SurveyRun.h"
#include "Tools/aaxhost/window/CVirtualDisplay.h"
#include "Tools/support/CWholeFile.h"
#include "Tools/support/ProgramPath.h"

#include <algorithm>
#include <cstdio>
#include <fmt/format.h>
#include <memory>
#include <thread>

namespace
{
struct SSurveyOptions
{
    std::vector<std::string> mPlaces;
    SCheckChoice mChoice;
    std::string mNamePattern;
    std::string mOutput = "survey";
    int mJobs = static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, 256U));
    bool mFeatures = false;
    bool mNoPages = false;
    bool mAgain = false;
};

constexpr int kVerdictWidth = 8;
constexpr int kPluginWidth = 30;

/** Prints each row as it comes and keeps the pages up to date, so that what is done stays after an interrupt.
 */
class CSurveyPages
{
public:
    CSurveyPages(const SSurveySettings& inSettings, const SSurveyFacts& inFacts)
        : mSettings(inSettings), mFacts(inFacts), mProgress(static_cast<double>(inFacts.mTotal))
    {
    }

    COutcome<SDone> Take(const SSurveyRow& inRow, bool inWasKept)
    {
        mProgress.Hide();
        const std::string words = InWords(inRow) + (inWasKept ? " (from before)" : "");
        fmt::print("{:<{}} {:<{}} {}\n", NameOfVerdict(inRow.mVerdict), kVerdictWidth, inRow.mName,
                   words.empty() ? 0 : kPluginWidth, words);
        std::fflush(stdout); // as it comes, also into a pipe
        const auto place = std::ranges::upper_bound(mRows, inRow.mName, {}, &SSurveyRow::mName);
        mRows.insert(place, inRow);
        mProgress.Show(static_cast<double>(mRows.size()));
        return Write();
    }
    COutcome<SDone> Write() const
    {
        if (const auto written =
                WriteText(File("results.json"), SurveyAsJson(mRows, mFacts.mTotal, mFacts.mStrictness));
            !written)
            return written.Problem();
        return WriteText(File("index.html"), SurveyPage(mRows, mFacts));
    }
    std::string File(const char* inName) const { return mSettings.mOutput / inName; }
    const std::vector<SSurveyRow>& Rows() const { return mRows; }

private:
    const SSurveySettings& mSettings;
    const SSurveyFacts mFacts;
    CProgressBar mProgress;
    std::vector<SSurveyRow> mRows; // by name
};

EFitness FitnessOf(const SSurveyRow& inRow)
{
    switch (inRow.mVerdict)
    {
    case ESurveyVerdict::Fit: return EFitness::Fit;
    case ESurveyVerdict::NotFit:
    case ESurveyVerdict::Refused: return EFitness::NotFit;
    case ESurveyVerdict::Unknown: break;
    }
    return EFitness::Unknown;
}

/** "3 plug-ins: 2 fit, 1 not fit." @return the exit code. */
int Conclude(const CSurveyPages& inPages)
{
    EFitness fitness = EFitness::Fit;
    for (const SSurveyRow& row : inPages.Rows())
        fitness = Worse(fitness, FitnessOf(row));
    SSurveyCounts counts = CountRows(inPages.Rows());
    std::string parts;
    using enum ESurveyVerdict;
    for (const ESurveyVerdict verdict : {Fit, NotFit, Unknown, Refused})
        if (const int count = counts.mPlugins[verdict]; count > 0)
            parts += fmt::format("{}{} {}", parts.empty() ? "" : ", ", count, NameOfVerdict(verdict));
    fmt::print("\n{} plug-in{}: {}. The page is {}.\n", inPages.Rows().size(),
               inPages.Rows().size() == 1 ? "" : "s", parts, inPages.File("index.html"));
    return ExitFor(fitness);
}

int Survey(const SSurveyOptions& inOptions)
{
    const auto job = JobOf(inOptions.mChoice);
    if (!job)
        return FailUsage(job.Problem().mSentence);
    const auto plugins = FindPlugins(inOptions.mPlaces, inOptions.mNamePattern);
    if (!plugins)
        return FailUsage(plugins.Problem().mSentence);
    if (plugins->empty())
        return FailUsage("There is no plug-in: neither a file '*.so' nor a bundle '*.vst'.");
    const SSurveySettings settings{*job,
                                   inOptions.mFeatures,
                                   !inOptions.mNoPages,
                                   inOptions.mJobs,
                                   inOptions.mAgain,
                                   ProgramPath(),
                                   std::filesystem::absolute(inOptions.mOutput).lexically_normal()};
    if (const auto ready = CheckTools(settings); !ready)
        return Fail(ready.Problem());
    if (const auto made = MakeSurveyFolders(settings); !made)
        return Fail(made.Problem());
    CSurveyPages pages(settings, {plugins->size(), job->mStrictness, inOptions.mFeatures});
    if (const auto written = pages.Write(); !written)
        return Fail(written.Problem());
    CVirtualDisplay display;
    StartDisplay(*job, display);
    const auto done = RunSurvey(
        *plugins, settings, [&](const SSurveyRow& row, bool wasKept) { return pages.Take(row, wasKept); });
    return done ? Conclude(pages) : Fail(done.Problem());
}
} // namespace

void AddCommandSurvey(CLI::App& ioApp, CommandAction& outAction)
{
    auto options = std::make_shared<SSurveyOptions>();
    CLI::App* command =
        ioApp.add_subcommand("survey", "Check every VST 2 plug-in of some folders as a module");
    command->footer(
        "Each plug-in is put into a module with the options that vst2probe proposes, and checked as 'check' "
        "does. In the output folder are 'index.html', one page over all of them, with a page each below "
        "'plug-ins', and 'results.json', the same for a machine. After an interrupt, the same command goes "
        "on; a plug-in that is done is not done again while it, the tools and the options stay the same. "
        "Exit code: 0 where every plug-in is fit to ship as a module, 1 where one is not or is refused, "
        "whoever's "
        "fault that is, 2 for wrong usage, 3 where it could not be told of one.");
    command
        ->add_option(
            "FOLDER", options->mPlaces,
            "Folders to search with all below them for files '*.so' and bundles '*.vst', or plug-ins")
        ->required();
    AddStrictnessOption(*command, options->mChoice);
    AddSelectionOptions(*command, options->mChoice);
    command->add_option(
        "--name-pattern", options->mNamePattern,
        "Take only plug-ins whose file's name without its extension is like this, with * and ?");
    command->add_option("--jobs", options->mJobs, "Plug-ins at a time (as many as there are processors)")
        ->check(WholeNumberFrom(1, 256))
        ->envname("AAXHOST_SURVEY_JOBS");
    command->add_option("--output", options->mOutput, "Folder to write into (survey)")->type_name("FOLDER");
    command->add_flag("--features", options->mFeatures, "Check them in products with all features");
    command->add_flag("--no-pages", options->mNoPages,
                      "Leave out the page of each plug-in, for which it is measured some seconds");
    command->add_flag("--again", options->mAgain, "Do again what is done");
    command->callback([options, &outAction] { outAction = [options] { return Survey(*options); }; });
}
