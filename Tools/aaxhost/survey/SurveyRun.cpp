#include "Tools/aaxhost/survey/SurveyRun.h"

#include "Tools/support/CWholeFile.h"
#include "Tools/support/ChildRun.h"

#include <fmt/format.h>
#include <fstream>
#include <memory>
#include <optional>

namespace
{
namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

constexpr double kNoLimitSeconds = 1e8; // three years; what takes long in it has limits of its own

fs::path RecordFile(const SSurveySettings& inSettings, const SFoundPlugin& inPlugin)
{
    return inSettings.mOutput / "results" / (inPlugin.mName + ".json");
}

/** Whatever a result depends on but for the plug-in. */
std::string Asked(const SSurveySettings& inSettings)
{
    const SCheckJob& job = inSettings.mJob;
    std::string text = fmt::format(
        "strictness {}, limit {}, features {}, pages {}, aaxhost {}, vst2probe {}, module {}",
        job.mStrictness, job.mLimitSeconds, inSettings.mWithFeatures, inSettings.mWithPages,
        StampOf(inSettings.mHost), StampOf(inSettings.Probe()), StampOf(inSettings.ModuleFolder()));
    if (job.mChecks != ChecksFor(job.mStrictness))
        for (const SCheck* const check : job.mChecks)
            text += fmt::format(", {}", check->mName);
    for (const SCheckPattern& pattern : job.mLeftOut)
        text += fmt::format(", not {} {}", pattern.mPattern, pattern.mReason);
    return text;
}

/** The record of an earlier survey, where it still holds. */
std::optional<Json> KeptRecord(const SSurveySettings& inSettings, const SFoundPlugin& inPlugin,
                               const Json& inFacts)
{
    std::ifstream file(RecordFile(inSettings, inPlugin));
    Json record = Json::parse(file, nullptr, false);
    if (!record.is_object())
        return std::nullopt;
    for (const auto& [key, value] : inFacts.items())
        if (record.value(key, std::string()) != value)
            return std::nullopt;
    const std::string page = record.value("page", std::string());
    if (!page.empty() && !fs::exists(inSettings.mOutput / page))
        return std::nullopt;
    return record;
}

/** One plug-in on its way. */
class CSurveyTask
{
public:
    CSurveyTask(const SFoundPlugin& inPlugin, const SSurveySettings& inSettings, Json inFacts)
        : mPlugin(inPlugin),
          mSettings(inSettings),
          mFacts(std::move(inFacts)),
          mRun([this] { return Text(SurveyPlugin(mPlugin, mSettings)); }, kNoLimitSeconds)
    {
    }

    /** Waits a moment. @return its record, nothing where it goes on. */
    std::optional<Json> TakeRecord(std::chrono::milliseconds inLongest)
    {
        const auto end = mRun.TakeEnd(inLongest);
        if (!end)
            return std::nullopt;
        Json record = mFacts;
        Json found = Json::parse(end->mText, nullptr, false);
        if (end->mKind == SChildEnd::EKind::Finished && found.is_object())
            record.update(found);
        else
            record["problem"] = "The process that looked at it ended before it was done.";
        record["seconds"] = std::chrono::duration<double>(CChildProcess::Clock::now() - mBegin).count();
        return record;
    }
    static std::string Text(const Json& inRecord)
    {
        return inRecord.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
    }

private:
    const SFoundPlugin& mPlugin;
    const SSurveySettings& mSettings;
    const Json mFacts;
    const CChildProcess::Clock::time_point mBegin = CChildProcess::Clock::now();
    CChildRun mRun;
};
} // namespace

COutcome<SDone> MakeSurveyFolders(const SSurveySettings& inSettings)
{
    for (const char* folder : {"results", "plug-ins"})
    {
        std::error_code error;
        fs::create_directories(inSettings.mOutput / folder, error);
        if (error)
            return SProblem{fmt::format("The folder '{}' cannot be made: {}.",
                                        (inSettings.mOutput / folder).string(), error.message())};
    }
    return SDone{};
}

COutcome<std::vector<SSurveyRow>> RunSurvey(
    const std::vector<SFoundPlugin>& inPlugins, const SSurveySettings& inSettings,
    const std::function<COutcome<SDone>(const SSurveyRow&, bool)>& inDone)
{
    std::vector<SSurveyRow> rows(inPlugins.size());
    std::vector<std::pair<std::size_t, Json>> toDo; // with what its record begins with
    const std::string asked = Asked(inSettings);
    const auto finish = [&](std::size_t index, const Json& record, bool wasKept)
    {
        rows[index] = RowOf(inPlugins[index].mName, record);
        return inDone(rows[index], wasKept);
    };
    for (std::size_t index = 0; index < inPlugins.size(); ++index)
    {
        const SFoundPlugin& plugin = inPlugins[index];
        Json facts{{"plugin", plugin.mPath.string()}, {"stamp", StampOf(plugin.mPath)}, {"asked", asked}};
        const auto kept = inSettings.mAgain ? std::nullopt : KeptRecord(inSettings, plugin, facts);
        if (!kept)
            toDo.emplace_back(index, std::move(facts));
        else if (const auto heard = finish(index, *kept, true); !heard)
            return heard.Problem();
    }
    std::vector<std::pair<std::size_t, std::unique_ptr<CSurveyTask>>> running;
    for (std::size_t next = 0; next < toDo.size() || !running.empty();)
    {
        for (; next < toDo.size() && std::ssize(running) < inSettings.mPluginsAtATime; ++next)
        {
            auto& [index, facts] = toDo[next];
            running.emplace_back(index, std::make_unique<CSurveyTask>(inPlugins[index], inSettings, facts));
        }
        for (auto entry = running.begin(); entry != running.end();)
        {
            const auto record = entry->second->TakeRecord(std::chrono::milliseconds(20));
            if (!record)
            {
                ++entry;
                continue;
            }
            const std::size_t index = entry->first;
            entry = running.erase(entry);
            if (!record->contains("problem")) // else it is to be tried again
            {
                const std::string text = CSurveyTask::Text(*record);
                if (const auto kept = WriteWholeFile(RecordFile(inSettings, inPlugins[index]),
                                                     std::as_bytes(std::span(text)));
                    !kept)
                    return kept.Problem();
            }
            if (const auto heard = finish(index, *record, false); !heard)
                return heard.Problem();
        }
    }
    return rows;
}
