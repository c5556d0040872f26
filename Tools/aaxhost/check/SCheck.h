#pragma once
#include <span>
#include <string>
#include <string_view>

class CCheckContext;

enum class EVerdict
{
    Passed,
    Warning, // nothing that breaks a session, yet worth a look
    Failed,
    Skipped, // there was nothing to look at; the reason says what is missing
    Unseen,  // there may be something to look at, but not on this machine
    Unstable // failed in one run and did not, or otherwise, in the next; the reason says both
};
/** "passed", "warning", "failed", "skipped", "unseen", "unstable". */
const char* NameOfVerdict(EVerdict inVerdict) noexcept;

/** What one check found. */
struct SFinding
{
    EVerdict mVerdict = EVerdict::Passed;
    std::string mReason; // a sentence; empty when there is nothing to say
    bool operator==(const SFinding&) const = default;

    static SFinding Passed(std::string inReason = {}) { return {EVerdict::Passed, std::move(inReason)}; }
    static SFinding Warning(std::string inReason) { return {EVerdict::Warning, std::move(inReason)}; }
    static SFinding Failed(std::string inReason) { return {EVerdict::Failed, std::move(inReason)}; }
    static SFinding Skipped(std::string inReason) { return {EVerdict::Skipped, std::move(inReason)}; }
    static SFinding Unseen(std::string inReason) { return {EVerdict::Unseen, std::move(inReason)}; }
};

/** Thrown by helpers in the middle of a check: it ends with this finding. Never leaves the check library. */
struct SCheckEnd
{
    SFinding mFinding;
};

/** What the same check with the plug-in alone says of whose fault a finding is. */
enum class EAlone
{
    Decides,
    Accuses,  // where it fails, too, it is the plug-in's; else nothing is known: the damage hits other bytes
    Compared, // it is not asked: the check itself compares the module with the plug-in alone
    Nothing   // the check makes no instance, so there is nothing to repeat with the plug-in alone
};

/** One named check, in the order in which the tables read well. */
struct SCheck // NOLINT(clang-analyzer-optin.performance.Padding)
{
    const char* mName;        // group.subject
    const char* mDescription; // one sentence
    int mStrictness;          // 1 to 10: the lowest at which it runs
    SFinding (*mRun)(CCheckContext&);
    EAlone mAlone = EAlone::Decides;

    std::string_view Group() const
    {
        const std::string_view name = mName;
        return name.substr(0, name.find('.'));
    }
};

inline constexpr int kLowestStrictness = 1;
inline constexpr int kHighestStrictness = 10;

/** Every check, group after group; within a group in the order in which they run. */
std::span<const SCheck> AllChecks();
/** Null when there is none of that name. */
const SCheck* FindCheck(std::string_view inName);

// One file each; two groups have two.
std::span<const SCheck> DescriptionChecks();
std::span<const SCheck> LifeCycleChecks();
std::span<const SCheck> ParameterChecks();
std::span<const SCheck> AutomationChecks();
std::span<const SCheck> MidiChecks();
std::span<const SCheck> RenderingChecks();
std::span<const SCheck> SignalChecks(); // the part of the rendering group that is about what comes in and out
std::span<const SCheck> TransportChecks();
std::span<const SCheck> StateChecks();
std::span<const SCheck> EditorChecks();
std::span<const SCheck> FeatureChecks();
std::span<const SCheck>
HostFeatureChecks(); // the part of the features group that is about what a host is told
std::span<const SCheck> RobustnessChecks();
