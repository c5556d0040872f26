#include "Tools/aaxhost/survey/SurveyPlugin.h"

#include "Tools/aaxhost/check/CheckSummary.h"
#include "Tools/aaxhost/report/CheckReport.h"
#include "Tools/aaxhost/report/RunFacts.h"
#include "Tools/support/CChildProcess.h"
#include "Tools/support/CTemporaryFolder.h"
#include "Tools/support/CWholeFile.h"

#include <exception>
#include <fmt/format.h>
#include <fstream>

namespace
{
namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

constexpr char kModule[] = "SurveyModule";
constexpr auto kProbeLimit = std::chrono::minutes(2); // it has limits of its own, which are shorter

/** What vst2probe tells of a plug-in, or why it refuses it. */
COutcome<Json> Probe(const fs::path& inProgram, const fs::path& inPlugin)
{
    const auto deadline = CChildProcess::Clock::now() + kProbeLimit;
    CChildProcess probe(inProgram, {"--json", "--", inPlugin});
    std::string text;
    while (const auto more = probe.Read(deadline))
        text += *more;
    Json told = Json::parse(text, nullptr, false);
    if (told.is_object() && told.contains("options"))
        return told;
    if (!told.is_object() || !told.contains("error"))
        return SProblem{"vst2probe did not end, or without a word."};
    std::string refusal = told["error"];
    const std::string beginning = inPlugin.string() + " cannot be wrapped: "; // its row says which it is
    if (refusal.starts_with(beginning))
        refusal = "Cannot be wrapped: " + refusal.substr(beginning.size());
    return SProblem{refusal};
}

/** A product around the plug-in. Throws std::filesystem::filesystem_error. */
fs::path MakeModule(const fs::path& inFolder, const SFoundPlugin& inPlugin, const Json& inOptions,
                    const SSurveySettings& inSettings)
{
    fs::path bundle = inFolder / (std::string(kModule) + ".aaxplugin");
    const fs::path resources = bundle / "Contents" / "Resources";
    fs::copy(inSettings.ModuleFolder() / bundle.filename(), bundle, fs::copy_options::recursive);
    fs::create_directories(resources);
    fs::copy(inPlugin.mPath, resources / "source.vst", fs::copy_options::recursive);
    if (inSettings.mWithFeatures)
        fs::copy(inSettings.ModuleFolder() / "features.txt", resources);
    std::ofstream options(resources / "options.txt");
    for (const auto& [keyword, option] : inOptions.items())
        options << keyword << ' '
                << (option["value"] == true    ? 1
                    : option["value"] == false ? 0
                                               : option["value"].get<int>())
                << '\n';
    if (!options.flush())
        throw fs::filesystem_error("The options cannot be written", resources,
                                   std::make_error_code(std::errc::io_error));
    return bundle;
}

const char* NameOfFitness(EFitness inFitness)
{
    switch (inFitness)
    {
    case EFitness::Fit: return "fit";
    case EFitness::NotFit: return "not fit";
    case EFitness::Unknown: break;
    }
    return "unknown";
}

COutcome<SDone> CheckPlugin(const SFoundPlugin& inPlugin, const SSurveySettings& inSettings,
                            const fs::path& inModule, Json& ioRecord)
{
    SCheckJob job = inSettings.mJob;
    job.mModule = inModule;
    job.mPlugin = inPlugin.mPath;
    job.mCommand = fmt::format("aaxhost survey {} --again{}", QuotedForShell(job.mPlugin),
                               inSettings.mWithFeatures ? " --features" : "");
    const std::vector<SCheckResult> results = RunChecks(job);
    ioRecord["fitness"] = NameOfFitness(FitnessOf(results));
    ioRecord["results"] = Json::parse(ResultsAsJson(job, results));
    ioRecord["page"] = inSettings.mWithPages ? PageOf(inPlugin).string() : std::string();
    if (!inSettings.mWithPages)
        return SDone{};
    const std::string page = ReportPage(job, results);
    return WriteWholeFile(inSettings.mOutput / PageOf(inPlugin), std::as_bytes(std::span(page)));
}
} // namespace

fs::path SSurveySettings::ModuleFolder() const
{
    return mHost.parent_path().parent_path() / "share" / "aaxadapter" / "survey";
}

COutcome<SDone> CheckTools(const SSurveySettings& inSettings)
{
    std::error_code none;
    for (const fs::path& file : {inSettings.Probe(), inSettings.ModuleFolder() / "features.txt",
                                 inSettings.ModuleFolder() / (std::string(kModule) + ".aaxplugin")})
        if (!fs::exists(file, none))
            return SProblem{
                fmt::format("There is no '{}', which is built and installed with aaxhost.", file.string())};
    return SDone{};
}

fs::path PageOf(const SFoundPlugin& inPlugin) { return fs::path("plug-ins") / (inPlugin.mName + ".html"); }

Json SurveyPlugin(const SFoundPlugin& inPlugin, const SSurveySettings& inSettings)
{
    Json record;
    try
    {
        const auto told = Probe(inSettings.Probe(), inPlugin.mPath);
        if (!told)
        {
            record["refused"] = told.Problem().mSentence;
            return record;
        }
        record["name"] = (*told)["name"];
        record["maker"] = (*told)["vendor"];
        for (const auto& [keyword, option] : (*told)["options"].items())
            record["options"][keyword] = option["value"];
        const CTemporaryFolder folder;
        const fs::path module = MakeModule(folder.Path(), inPlugin, (*told)["options"], inSettings);
        if (const auto checked = CheckPlugin(inPlugin, inSettings, module, record); !checked)
            record["problem"] = checked.Problem().mSentence;
    }
    catch (const std::exception& error) // no folder, no process, no space
    {
        record["problem"] = fmt::format("It could not be looked at: {}.", error.what());
    }
    return record;
}
