#include "Tools/aaxhost/survey/SurveyRow.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace
{
using Json = nlohmann::ordered_json;

std::string TextOf(const Json& inRecord, const char* inKey)
{
    const auto found = inRecord.find(inKey);
    return found != inRecord.end() && found->is_string() ? found->get<std::string>() : std::string();
}

ESurveyVerdict VerdictOf(const Json& inRecord)
{
    if (inRecord.contains("refused"))
        return ESurveyVerdict::Refused;
    const std::string fitness = TextOf(inRecord, "fitness");
    return fitness == "fit"       ? ESurveyVerdict::Fit
           : fitness == "not fit" ? ESurveyVerdict::NotFit
                                  : ESurveyVerdict::Unknown;
}

void AddCheck(SSurveyRow& ioRow, const Json& inCheck)
{
    const std::string result = TextOf(inCheck, "result");
    SGroupCounts& group = ioRow.mGroups[TextOf(inCheck, "group")];
    if (result == "failed" || result == "unstable")
    {
        ++group.mFailed;
        ioRow.mFailed.push_back(
            {TextOf(inCheck, "name"), TextOf(inCheck, "reason"), TextOf(inCheck, "fault")});
    }
    else if (result == "warning")
    {
        ++group.mWarnings;
        ++ioRow.mWarnings;
    }
    else
        ++(result == "passed" ? group.mPassed : result == "unseen" ? group.mUnseen : group.mSkipped);
}

Json AsJson(const SSurveyRow& inRow)
{
    Json json{{"name", inRow.mName},
              {"plugin", inRow.mPlugin},
              {"product", inRow.mProduct},
              {"maker", inRow.mMaker},
              {"verdict", NameOfVerdict(inRow.mVerdict)},
              {"reason", inRow.mReason},
              {"failed_only_through_the_module", inRow.CountFailed("module")},
              {"failed_by_itself", inRow.CountFailed("plug-in")},
              {"failed_for_reasons_unknown", inRow.CountFailed("unknown")},
              {"warnings", inRow.mWarnings},
              {"seconds", inRow.mSeconds},
              {"page", inRow.mPage},
              {"groups", Json::object()},
              {"failed", Json::array()}};
    for (const auto& [group, counts] : inRow.mGroups)
        json["groups"][group] = {{"failed", counts.mFailed},
                                 {"warnings", counts.mWarnings},
                                 {"unseen", counts.mUnseen},
                                 {"passed", counts.mPassed},
                                 {"skipped", counts.mSkipped}};
    for (const SFailedCheck& check : inRow.mFailed)
        json["failed"].push_back({{"name", check.mName}, {"reason", check.mReason}, {"fault", check.mFault}});
    return json;
}
} // namespace

const char* NameOfVerdict(ESurveyVerdict inVerdict) noexcept
{
    switch (inVerdict)
    {
    case ESurveyVerdict::Fit: return "fit";
    case ESurveyVerdict::NotFit: return "not fit";
    case ESurveyVerdict::Unknown: return "unknown";
    case ESurveyVerdict::Refused: return "refused";
    }
    return "";
}

int SSurveyRow::CountFailed(const std::string& inFault) const
{
    return static_cast<int>(std::ranges::count(mFailed, inFault, &SFailedCheck::mFault));
}

SSurveyRow RowOf(const std::string& inName, const Json& inRecord)
{
    SSurveyRow row;
    row.mName = inName;
    row.mPlugin = TextOf(inRecord, "plugin");
    row.mProduct = TextOf(inRecord, "name");
    row.mMaker = TextOf(inRecord, "maker");
    row.mVerdict = VerdictOf(inRecord);
    row.mReason = TextOf(inRecord, row.mVerdict == ESurveyVerdict::Refused ? "refused" : "problem");
    row.mPage = TextOf(inRecord, "page");
    row.mSeconds = inRecord.value("seconds", 0.0);
    if (const auto results = inRecord.find("results"); results != inRecord.end())
    {
        for (const Json& check : (*results)["checks"])
            AddCheck(row, check);
        if (row.mVerdict == ESurveyVerdict::Unknown && row.mReason.empty())
            row.mReason = TextOf(*results, "verdict");
    }
    return row;
}

std::string InWords(const SSurveyRow& inRow)
{
    if (!inRow.mReason.empty())
        return inRow.mReason;
    std::vector<std::string> parts;
    const auto add = [&](int count, const char* words)
    {
        if (count > 0)
            parts.push_back(fmt::format("{} {}", count, words));
    };
    add(inRow.CountFailed("module"), "failed only through the module");
    add(inRow.CountFailed("plug-in"), "failed by itself");
    add(inRow.CountFailed("unknown"), "failed for reasons unknown");
    add(inRow.mWarnings, inRow.mWarnings == 1 ? "warning" : "warnings");
    return fmt::format("{}", fmt::join(parts, ", "));
}

SSurveyCounts CountRows(const std::vector<SSurveyRow>& inRows)
{
    SSurveyCounts counts;
    for (const SSurveyRow& row : inRows)
    {
        ++counts.mPlugins[row.mVerdict];
        for (const SFailedCheck& check : row.mFailed)
            ++counts.mFailed[check.mFault];
        if (row.CountFailed("module") > 0)
            ++counts.mFailingThroughModule;
        else if (!row.mFailed.empty() && row.CountFailed("unknown") == 0)
            ++counts.mFailingAlone;
    }
    return counts;
}

std::string SurveyAsJson(const std::vector<SSurveyRow>& inRows, std::size_t inTotal, int inStrictness)
{
    SSurveyCounts counts = CountRows(inRows);
    Json json;
    json["strictness"] = inStrictness;
    json["plugins_to_do"] = inTotal;
    json["plugins_done"] = inRows.size();
    for (const ESurveyVerdict verdict :
         {ESurveyVerdict::Fit, ESurveyVerdict::NotFit, ESurveyVerdict::Unknown, ESurveyVerdict::Refused})
    {
        std::string name = NameOfVerdict(verdict);
        std::ranges::replace(name, ' ', '_');
        json[name] = counts.mPlugins[verdict];
    }
    json["plugins_failing_only_through_the_module"] = counts.mFailingThroughModule;
    json["plugins_failing_by_themselves_only"] = counts.mFailingAlone;
    json["plugins"] = Json::array();
    for (const SSurveyRow& row : inRows)
        json["plugins"].push_back(AsJson(row));
    // File names and texts of plug-ins are in any encoding.
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}
