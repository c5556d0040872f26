#pragma once
#include "Tools/aaxhost/check/CheckRunner.h"
#include "Tools/aaxhost/survey/PluginSearch.h"

#include <nlohmann/json.hpp>

/** What a survey works with, and how. */
struct SSurveySettings
{
    SCheckJob mJob; // but for the module and the plug-in
    bool mWithFeatures = false;
    bool mWithPages = true; // one for each plug-in
    int mPluginsAtATime = 1;
    bool mAgain = false;         // also what is done
    std::filesystem::path mHost; // this program, beside which vst2probe lies
    std::filesystem::path mOutput;

    /** The bundle without a plug-in, and the list of features: where they lie in a build and in a package. */
    std::filesystem::path ModuleFolder() const;
    std::filesystem::path Probe() const { return mHost.parent_path() / "vst2probe"; }
};

/** @return a problem where something is missing that a survey works with. */
COutcome<SDone> CheckTools(const SSurveySettings& inSettings);

/** The page with the checks of one plug-in, as seen from the output folder. */
std::filesystem::path PageOf(const SFoundPlugin& inPlugin);

/**
 * Asks vst2probe which options the plug-in needs, makes a module of it and has that checked; for a process of
 * its own, of which it lasts as long as it takes.
 *
 * @return the plug-in's `name` and `maker`, and either `refused` with a sentence or the product's `options`,
 * `fitness` and `results` as `aaxhost check --json` writes them.
 */
nlohmann::ordered_json SurveyPlugin(const SFoundPlugin& inPlugin, const SSurveySettings& inSettings);
