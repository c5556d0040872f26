#pragma once
#include "Tests/integration/ModuleBundle.h"
#include "Tests/support/FileContents.h"
#include "Tests/support/ToolRun.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

/** Names of checks. */
using CheckNames = std::set<std::string>;

/** What the checks read the features of the product with all of them from. */
inline const std::filesystem::path kAllFeatures =
    kAllFeaturesModule.parent_path().parent_path() / "Resources" / "features.txt";

#ifdef AAXADAPTER_SANITIZED
inline constexpr bool kIsSanitized = true;
#else
inline constexpr bool kIsSanitized = false;
#endif

/** One run of `aaxhost check`. */
struct SCheckRun
{
    SCheckRun(const std::filesystem::path& inModule, const std::filesystem::path& inPlugin,
              const std::vector<std::string>& inArguments = {}, const std::filesystem::path& inFeatures = {})
        : mBundle(inModule, inPlugin)
    {
        if (!inFeatures.empty())
            std::filesystem::copy_file(inFeatures, mBundle.SourceVst().replace_filename("features.txt"));
        std::vector<std::string> command = {AAXHOST, "check", mBundle.Path().string(), "--json",
                                            File("json")};
        command.insert(command.end(), inArguments.begin(), inArguments.end());
        mRun = RunTool(command);
        if (std::filesystem::exists(File("json")))
            mResults = nlohmann::json::parse(Contents(File("json")));
    }
    std::string File(const std::string& inExtension) const
    {
        return (mBundle.Path().parent_path() / ("result." + inExtension)).string();
    }
    CheckNames With(const std::string& inResult) const
    {
        CheckNames names;
        for (const auto& check : mResults.value("checks", nlohmann::json::array()))
            if (check["result"] == inResult)
                names.insert(check["name"].get<std::string>());
        return names;
    }
    std::string ReasonOf(const std::string& inName) const { return Told(inName, "reason"); }
    /** Something that is told of a check. */
    std::string Told(const std::string& inName, const char* inWhat) const
    {
        for (const auto& check : mResults.value("checks", nlohmann::json::array()))
            if (check["name"] == inName)
                return check.value(inWhat, "");
        return "no such check";
    }

    CModuleBundle mBundle;
    SToolRun mRun;
    nlohmann::json mResults;
};
