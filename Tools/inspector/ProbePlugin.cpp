#include "Tools/inspector/ProbePlugin.h"

#include "Tools/inspector/CPluginInspector.h"
#include "Tools/inspector/ChildReport.h"
#include "Tools/support/CChildProcess.h"
#include "Tools/support/CTemporaryFolder.h"

#include <cstdlib>
#include <functional>
#include <system_error>
#include <utility>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace
{
using Deadline = CChildProcess::Clock::time_point;

SProbeAttempt HearAttempt(CChildProcess& ioChild, Deadline inDeadline, std::chrono::milliseconds inLimit)
{
    SProbeAttempt attempt;
    std::string stage = "its process was started";
    while (const std::optional<std::string> line = ioChild.ReadLine(inDeadline))
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
    attempt.mRefusal = HowChildEnded(ioChild.Wait(inDeadline), stage, inLimit);
    return attempt;
}

/** @param inTry looks once, with that as the host's version inside the entry function. */
SProbeResult ProbeWith(const std::function<SProbeAttempt(std::int32_t)>& inTry)
{
    SProbeResult result;
    SProbeAttempt attempt = inTry(0);
    result.mAskedVersion = attempt.mAskedVersion;
    if (!attempt.mFacts && attempt.mAskedVersion)
    {
        SProbeAttempt second = inTry(kUsualEntryVersion);
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
} // namespace

SProbeAttempt ProbeOnce(const std::string& inProgram, const std::filesystem::path& inPlugin,
                        std::int32_t inEntryVersion, std::chrono::milliseconds inLimit)
{
    const auto deadline = CChildProcess::Clock::now() + inLimit;
    CChildProcess child(inProgram, {kProbeChildOption, std::to_string(inEntryVersion), "--timeout",
                                    fmt::format("{}", static_cast<double>(inLimit.count()) / 1000.0), "--",
                                    inPlugin.string()});
    return HearAttempt(child, deadline, inLimit);
}

SProbeResult ProbePlugin(const std::string& inProgram, const std::filesystem::path& inPlugin,
                         std::chrono::milliseconds inLimit)
{
    return ProbeWith([&](std::int32_t inVersion)
                     { return ProbeOnce(inProgram, inPlugin, inVersion, inLimit); });
}

SProbeResult ProbePluginInCopy(const std::filesystem::path& inPlugin, std::chrono::milliseconds inLimit)
try
{
    const CTemporaryFolder home;
    const auto look = [&](std::int32_t inVersion)
    {
        const auto deadline = CChildProcess::Clock::now() + inLimit;
        CChildProcess child(
            [&](int inReport)
            {
                (void)setenv("HOME", home.Path().c_str(), 1); // else it reads what is there
                const CChildReport report(inReport, inLimit);
                CPluginInspector(inVersion,
                                 [&](const nlohmann::ordered_json& inMessage) { report.Send(inMessage); })
                    .Run(inPlugin.string());
            });
        return HearAttempt(child, deadline, inLimit);
    };
    return ProbeWith(look);
}
catch (const std::system_error& error)
{
    SProbeResult result;
    result.mRefusal = fmt::format("no process can be made for it: {}", error.what());
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
