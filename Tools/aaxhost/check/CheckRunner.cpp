#include "Tools/aaxhost/check/CheckRunner.h"

#include "Tools/aaxhost/check/CCheckContext.h"
#include "Tools/support/ChildRun.h"

#include <algorithm>
#include <exception>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace
{
/** Without these two nothing else can be looked at. */
constexpr std::string_view kOpens = "description.opens";
constexpr std::string_view kCreates = "life-cycle.creates";
/** Nor anything of its group where this one finds no editor, which takes a while to be sure of. */
constexpr std::string_view kEditorOpens = "editor.opens";

SFinding RunHere(const SCheck& inCheck, const SCheckJob& inJob)
{
    try
    {
        CCheckContext context(inJob.mModule, inJob.mStrictness, inJob.mAnswers);
        return inCheck.mRun(context);
    }
    catch (const SCheckEnd& end)
    {
        return end.mFinding;
    }
    catch (const std::exception& error)
    {
        return SFinding::Failed(fmt::format("An exception left the module: {}.", error.what()));
    }
    catch (...)
    {
        return SFinding::Failed("An exception left the module.");
    }
}

/** One character for the verdict, then the reason. */
std::string Packed(const SFinding& inFinding)
{
    return static_cast<char>('0' + static_cast<int>(inFinding.mVerdict)) + inFinding.mReason;
}

SFinding FindingOf(const SChildEnd& inEnd, double inLimit)
{
    switch (inEnd.mKind)
    {
    case SChildEnd::EKind::Finished:
        if (!inEnd.mText.empty())
            return {static_cast<EVerdict>(inEnd.mText.front() - '0'), inEnd.mText.substr(1)};
        return SFinding::Failed("The check ended without a result.");
    case SChildEnd::EKind::Signal:
        return SFinding::Failed(fmt::format("It crashed: {}.", NameOfSignal(inEnd.mNumber)));
    case SChildEnd::EKind::Exit:
        return SFinding::Failed(fmt::format("It ended the whole process with exit code {}.", inEnd.mNumber));
    case SChildEnd::EKind::Limit:
        return SFinding::Failed(
            fmt::format("It hung: it was not done after the limit of {} seconds.", inLimit));
    case SChildEnd::EKind::NotStarted: break;
    }
    return SFinding::Failed("No process could be started for the check.");
}

std::string Counted(int inCount, const char* inOne, const char* inMany)
{
    return inCount == 0 ? std::string() : fmt::format("{} {}", inCount, inCount == 1 ? inOne : inMany);
}
} // namespace

double LimitSeconds(int inStrictness) { return 20.0 * (1 + inStrictness); }

std::vector<const SCheck*> ChecksFor(int inStrictness)
{
    std::vector<const SCheck*> list;
    for (const SCheck& check : AllChecks())
        if (check.mStrictness <= inStrictness)
            list.push_back(&check);
    return list;
}

std::vector<SCheckResult> RunChecks(const SCheckJob& inJob,
                                    const std::function<void(const SCheckResult&)>& inDone)
{
    const double limit = inJob.mLimitSeconds > 0.0 ? inJob.mLimitSeconds : LimitSeconds(inJob.mStrictness);
    std::vector<SCheckResult> results;
    std::string obstacle;
    std::string editorObstacle;
    for (const SCheck* check : inJob.mChecks)
    {
        SCheckResult& result = results.emplace_back();
        result.mCheck = check;
        if (!obstacle.empty())
            result.mFinding = SFinding::Skipped(obstacle);
        else if (!editorObstacle.empty() && check->Group() == FindCheck(kEditorOpens)->Group())
            result.mFinding = SFinding::Skipped(editorObstacle);
        else
            result.mFinding =
                FindingOf(RunInChild([&] { return Packed(RunHere(*check, inJob)); }, limit), limit);
        if (result.mFinding.mVerdict == EVerdict::Failed)
        {
            if (check->mName == kOpens)
                obstacle = "The module does not open.";
            else if (check->mName == kCreates)
                obstacle = "The module gives no instance.";
        }
        if (check->mName == kEditorOpens && result.mFinding.mVerdict == EVerdict::Skipped)
            editorObstacle = result.mFinding.mReason;
        if (inDone)
            inDone(result);
    }
    return results;
}

SCheckCounts CountVerdicts(const std::vector<SCheckResult>& inResults)
{
    SCheckCounts counts;
    for (const SCheckResult& result : inResults)
        switch (result.mFinding.mVerdict)
        {
        case EVerdict::Passed: ++counts.mPassed; break;
        case EVerdict::Warning: ++counts.mWarnings; break;
        case EVerdict::Failed: ++counts.mFailed; break;
        case EVerdict::Skipped: ++counts.mSkipped; break;
        }
    return counts;
}

std::string ClosingLine(const std::vector<SCheckResult>& inResults)
{
    const SCheckCounts counts = CountVerdicts(inResults);
    std::string parts;
    for (const std::string& part :
         {Counted(counts.mFailed, "failed", "failed"), Counted(counts.mWarnings, "warning", "warnings"),
          Counted(counts.mSkipped, "skipped", "skipped"), Counted(counts.mPassed, "passed", "passed")})
        if (!part.empty())
            parts += (parts.empty() ? "" : ", ") + part;
    return fmt::format("{}: {}. {}", Counted(static_cast<int>(inResults.size()), "check", "checks"), parts,
                       counts.mFailed > 0    ? "Not fit to ship."
                       : counts.mPassed == 0 ? "Nothing was checked."
                                             : "Fit to ship.");
}

std::string ResultsAsJson(const SCheckJob& inJob, const std::vector<SCheckResult>& inResults)
{
    const SCheckCounts counts = CountVerdicts(inResults);
    nlohmann::ordered_json json;
    json["module"] = inJob.mModule;
    json["strictness"] = inJob.mStrictness;
    json["passed"] = counts.mPassed;
    json["warnings"] = counts.mWarnings;
    json["failed"] = counts.mFailed;
    json["skipped"] = counts.mSkipped;
    json["checks"] = nlohmann::ordered_json::array();
    for (const SCheckResult& result : inResults)
        json["checks"].push_back({{"name", result.mCheck->mName},
                                  {"group", result.mCheck->Group()},
                                  {"description", result.mCheck->mDescription},
                                  {"strictness", result.mCheck->mStrictness},
                                  {"result", NameOfVerdict(result.mFinding.mVerdict)},
                                  {"reason", result.mFinding.mReason}});
    // Plug-ins put what they like into their texts.
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}
