#pragma once
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

enum class ESurveyVerdict
{
    Fit,
    NotFit,
    Unknown,
    Refused // it cannot be made a product
};
/** "fit", "not fit", "unknown", "refused". */
const char* NameOfVerdict(ESurveyVerdict inVerdict) noexcept;

/** How many checks of a group ended how. */
struct SGroupCounts
{
    int mFailed = 0; // or unstable
    int mWarnings = 0;
    int mUnseen = 0;
    int mPassed = 0;
    int mSkipped = 0;
};

struct SFailedCheck
{
    std::string mName;
    std::string mReason;
    std::string mFault; // "module", "plug-in" or "unknown"
};

/** What came of one plug-in. */
struct SSurveyRow
{
    std::string mName; // of this row, no other's
    std::string mPlugin;
    std::string mProduct; // as the plug-in calls itself
    std::string mMaker;
    ESurveyVerdict mVerdict = ESurveyVerdict::Unknown;
    std::string mReason; // why it is refused or unknown
    std::string mPage;   // from the output folder; empty: none
    std::map<std::string, SGroupCounts> mGroups;
    std::vector<SFailedCheck> mFailed;
    int mWarnings = 0;
    double mSeconds = 0.0; // that it took

    /** @param inFault as in SFailedCheck. */
    int CountFailed(const std::string& inFault) const;
};

/** @param inRecord what the survey keeps of a plug-in (SurveyRun.h). */
SSurveyRow RowOf(const std::string& inName, const nlohmann::ordered_json& inRecord);

/** "9 checks: 1 failed (1 only through the module), 8 passed.", or why there were none. */
std::string InWords(const SSurveyRow& inRow);

/** Over all rows. */
struct SSurveyCounts
{
    std::map<ESurveyVerdict, int> mPlugins;
    int mFailingThroughModule = 0;      // plug-ins with a check that fails only through the module
    int mFailingAlone = 0;              // plug-ins of which every failure is their own
    std::map<std::string, int> mFailed; // checks by whose fault it is
};
SSurveyCounts CountRows(const std::vector<SSurveyRow>& inRows);

/** For a machine. */
std::string SurveyAsJson(const std::vector<SSurveyRow>& inRows, std::size_t inTotal, int inStrictness);
