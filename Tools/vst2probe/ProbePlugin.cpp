#include "Tools/vst2probe/ProbePlugin.h"

#include "Tools/support/CChildProcess.h"
#include "Tools/vst2probe/CPluginInspector.h"
#include "Tools/vst2probe/ChildReport.h"

#include <cstdlib>
#include <utility>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

SProbeAttempt ProbeOnce(const std::string& inProgram, const std::filesystem::path& inPlugin,
                        std::int32_t inEntryVersion, std::chrono::milliseconds inLimit)
{
    const auto deadline = CChildProcess::Clock::now() + inLimit;
    CChildProcess child(inProgram, {kProbeChildOption, std::to_string(inEntryVersion), "--timeout",
                                    fmt::format("{}", static_cast<double>(inLimit.count()) / 1000.0), "--",
                                    inPlugin.string()});
    SProbeAttempt attempt;
    std::string stage = "its process was started";
    while (const std::optional<std::string> line = child.ReadLine(deadline))
    {
        const auto told = nlohmann::ordered_json::parse(*line, nullptr, false);
        if (told.contains("stage"))
        {
            stage = told["stage"];
        }
        else if (told.contains("askedVersion"))
        {
            attempt.mAskedVersion = true;
        }
        else if (told.contains("refused"))
        {
            attempt.mRefusal = told["refused"];
            return attempt;
        }
        else if (told.contains("facts"))
        {
            attempt.mFacts = told["facts"].get<SPluginFacts>();
            return attempt;
        }
    }
    attempt.mRefusal = HowChildEnded(child.Wait(deadline), stage, inLimit);
    return attempt;
}

SProbeResult ProbePlugin(const std::string& inProgram, const std::filesystem::path& inPlugin,
                         std::chrono::milliseconds inLimit)
{
    SProbeResult result;
    SProbeAttempt attempt = ProbeOnce(inProgram, inPlugin, 0, inLimit);
    result.mAskedVersion = attempt.mAskedVersion;
    if (!attempt.mFacts && attempt.mAskedVersion)
    {
        SProbeAttempt second = ProbeOnce(inProgram, inPlugin, kUsualEntryVersion, inLimit);
        if (second.mFacts)
        {
            result.mEntryVersion = kUsualEntryVersion;
            result.mRefusalOfZero = attempt.mRefusal;
        }
        attempt = std::move(second);
    }
    result.mFacts = std::move(attempt.mFacts);
    result.mRefusal = std::move(attempt.mRefusal);
    return result;
}

void RunProbeChild(const std::filesystem::path& inPlugin, std::int32_t inEntryVersion,
                   std::chrono::milliseconds inLimit)
{
    const CChildReport report(inLimit);
    CPluginInspector(inEntryVersion, [&](const nlohmann::ordered_json& inMessage) { report.Send(inMessage); })
        .Run(inPlugin.string());
    _exit(EXIT_SUCCESS); // what the plug-in does at an ordinary exit is not asked
}
