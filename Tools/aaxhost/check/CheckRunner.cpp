#include "Tools/aaxhost/check/CheckRunner.h"

#include "Tools/support/ChildRun.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <fmt/format.h>
#include <memory>
#include <utility>

namespace
{
/** Without these two nothing else can be looked at. */
constexpr std::string_view kOpens = "description.opens";
constexpr std::string_view kCreates = "life-cycle.creates";
/** Nor anything of its group where this one finds no editor, which takes a while to be sure of. */
constexpr std::string_view kEditorOpens = "editor.opens";

SFinding RunHere(const SCheck& inCheck, const SCheckJob& inJob, ESubject inSubject)
{
    try
    {
        CSequence::SetSeed(inJob.mSeed);
        CCheckContext context(inJob.mModule, inJob.mStrictness, inJob.mAnswers, inSubject, inJob.mSizes);
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

bool IsWorseThan(EVerdict inVerdict, EVerdict inOther)
{
    const auto weight = [](EVerdict verdict)
    {
        switch (verdict)
        {
        case EVerdict::Warning: return 1;
        case EVerdict::Failed:
        case EVerdict::Unstable: return 2;
        default: return 0;
        }
    };
    return weight(inVerdict) > weight(inOther);
}

/**
 * What breaks down in one run of two is called the module's in one of 500: when each of five runs through it
 * does, and none of four with the plug-in alone.
 */
constexpr int kMostRunsAlone = 4;

/**
 * One check on its way: through the module, and where it did not pass, once more and with the plug-in alone;
 * by turns where it crashes or hangs through the module only.
 */
class CCheckTask
{
public:
    CCheckTask(const SCheck& inCheck, const SCheckJob& inJob) : mJob(inJob)
    {
        mResult.mCheck = &inCheck;
        Start(ESubject::Module);
    }

    const SCheckResult& Result() const noexcept { return mResult; }
    /** Goes on as far as it can within a moment. @return whether all is done. */
    bool Advance(std::chrono::milliseconds inLongest)
    {
        const std::optional<SChildEnd> end =
            mRun ? mRun->TakeEnd(inLongest) : std::optional(SChildEnd()); // no process was to be had
        if (!end)
            return false;
        mRun.reset();
        mResult.mSeconds = std::chrono::duration<double>(CChildProcess::Clock::now() - mBegin).count();
        const SFinding finding = FindingOf(*end, Limit());
        mHasBrokenDown = mHasBrokenDown || end->mKind != SChildEnd::EKind::Finished;
        if (mSubject == ESubject::PluginAlone)
            return TakeAlone(finding);
        return TakeFinding(finding, end->mKind == SChildEnd::EKind::Finished);
    }

private:
    double Limit() const
    {
        return mJob.mLimitSeconds > 0.0 ? mJob.mLimitSeconds : LimitSeconds(mJob.mStrictness);
    }

    void Start(ESubject inSubject)
    {
        mSubject = inSubject;
        try
        {
            mRun.emplace([this] { return Packed(RunHere(*mResult.mCheck, mJob, mSubject)); }, Limit());
        }
        catch (const std::exception&)
        {
            mRun.reset(); // no folder, pipe or process
        }
    }

    bool TakeFinding(const SFinding& inFinding, bool inHasEnded)
    {
        ++mRuns;
        mHasPassed = mHasPassed || !IsWorseThan(inFinding.mVerdict, EVerdict::Passed);
        if (mRuns == 1)
            mResult.mFinding = inFinding;
        else if (inFinding.mVerdict != mResult.mFinding.mVerdict)
        {
            const auto words = [](const SFinding& finding)
            { return finding.mReason.empty() ? std::string("passed.") : finding.mReason; };
            mResult.mFinding = {EVerdict::Unstable,
                                fmt::format("First: {} Then, in run {}: {}", words(mResult.mFinding), mRuns,
                                            words(inFinding))};
        }
        // On a machine under load, or by an accident of time, a sound check may not pass.
        const bool isSuspect = IsWorseThan(mResult.mFinding.mVerdict, EVerdict::Passed);
        const int runs = std::max(mJob.mRepeats, isSuspect ? 2 : 1);
        if (mResult.mFinding.mVerdict != EVerdict::Unstable && mRuns < runs)
        {
            Start(ESubject::Module);
            return false;
        }
        if (!IsWorseThan(mResult.mFinding.mVerdict, EVerdict::Passed))
            return true;
        mResult.mFault = EFault::Module;
        const EAlone alone = mResult.mCheck->mAlone;
        // What broke down may have been the plug-in alone, with which the module is compared.
        if (alone == EAlone::Compared && !inHasEnded)
            mResult.mFault = EFault::Unknown;
        if (alone == EAlone::Compared || alone == EAlone::Nothing)
            return true;
        Start(ESubject::PluginAlone);
        return false;
    }

    bool TakeAlone(const SFinding& inFinding)
    {
        mResult.mAlone = inFinding;
        const EVerdict verdict = inFinding.mVerdict;
        // A plug-in that writes where it should not, or whose threads race, breaks down by chance only.
        if (mHasBrokenDown && IsWorseThan(mResult.mFinding.mVerdict, verdict) &&
            ++mRunsAlone < kMostRunsAlone)
        {
            Start(mResult.mFinding.mVerdict == EVerdict::Unstable ? ESubject::PluginAlone : ESubject::Module);
            return false;
        }
        if (!IsWorseThan(mResult.mFinding.mVerdict, verdict))
            mResult.mFault = EFault::Plugin;
        else if (verdict == EVerdict::Skipped || verdict == EVerdict::Unseen ||
                 mHasPassed || // by chance through the module, then by chance alone
                 mResult.mCheck->mAlone == EAlone::Accuses)
            mResult.mFault = EFault::Unknown;
        return true;
    }

    const SCheckJob& mJob;
    SCheckResult mResult;
    ESubject mSubject = ESubject::Module;
    int mRuns = 0; // through the module
    int mRunsAlone = 0;
    bool mHasPassed = false;     // through the module, in any run
    bool mHasBrokenDown = false; // any run
    const CChildProcess::Clock::time_point mBegin = CChildProcess::Clock::now();
    std::optional<CChildRun> mRun;
};

/** What stands in the way of checks, as far as others have found it. */
class CObstacles
{
public:
    void Hear(const SCheckResult& inResult)
    {
        const std::string_view name = inResult.mCheck->mName;
        const EVerdict verdict = inResult.mFinding.mVerdict;
        const bool hasFailed = verdict == EVerdict::Failed || verdict == EVerdict::Unstable;
        if (name == kOpens && hasFailed)
            mAll = SFinding::Skipped("The module does not open.");
        else if (name == kCreates && hasFailed)
            mAll = SFinding::Skipped("The module gives no instance.");
        else if (name == kEditorOpens && (verdict == EVerdict::Skipped || verdict == EVerdict::Unseen))
            mEditors = inResult.mFinding;
    }
    /** What comes of a check without running it; nothing where nothing is in its way. */
    std::optional<SFinding> Before(const SCheck& inCheck) const
    {
        return mAll || inCheck.Group() != "editor" ? mAll : mEditors;
    }
    /** Others wait for what comes of it. */
    static bool MayBe(const SCheck& inCheck)
    {
        const std::string_view name = inCheck.mName;
        return name == kOpens || name == kCreates || name == kEditorOpens;
    }

private:
    std::optional<SFinding> mAll;
    std::optional<SFinding> mEditors;
};
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

SFinding RunCheckHere(const SCheck& inCheck, const SCheckJob& inJob)
{
    return RunHere(inCheck, inJob, ESubject::Module);
}

std::vector<SCheckResult> RunChecks(const SCheckJob& inJob,
                                    const std::function<void(const SCheckResult&)>& inDone)
{
    std::vector<std::optional<SCheckResult>> found(inJob.mChecks.size());
    std::vector<std::pair<std::size_t, std::unique_ptr<CCheckTask>>> running;
    std::vector<SCheckResult> results;
    CObstacles obstacles;
    std::size_t next = 0;
    bool isHeldUp = false;
    while (results.size() < found.size())
    {
        for (; next < found.size() && std::ssize(running) < inJob.mJobs && !isHeldUp; ++next)
        {
            const SCheck& check = *inJob.mChecks[next];
            auto obstacle = obstacles.Before(check);
            if (const SCheckPattern* const pattern = FindPattern(inJob.mLeftOut, check))
                obstacle = SFinding::Skipped(pattern->mReason.empty() ? "Left out."
                                                                      : "Left out: " + pattern->mReason);
            if (obstacle)
                found[next] = SCheckResult{&check, *obstacle};
            else
                running.emplace_back(next, std::make_unique<CCheckTask>(check, inJob));
            isHeldUp = !found[next] && CObstacles::MayBe(check);
        }
        // With one job there is nothing else to do than to wait for it.
        const std::chrono::milliseconds longest(running.size() == 1 ? 100 : 2);
        std::erase_if(running,
                      [&](const auto& entry)
                      {
                          const auto& [index, task] = entry;
                          if (!task->Advance(longest))
                              return false;
                          found[index] = task->Result();
                          obstacles.Hear(task->Result());
                          isHeldUp = isHeldUp && !CObstacles::MayBe(*task->Result().mCheck);
                          return true;
                      });
        for (; results.size() < found.size() && found[results.size()];
             inDone ? inDone(results.back()) : void())
            results.push_back(*found[results.size()]);
    }
    return results;
}
