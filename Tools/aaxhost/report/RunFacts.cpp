#include "Tools/aaxhost/report/RunFacts.h"

#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/commandline/CommandLine.h"

#include <ctime>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <fstream>

#include <sys/utsname.h>

namespace
{
/** As Linux names it; empty elsewhere. */
std::string ProcessorName()
{
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with("model name"))
            if (const auto colon = line.find(": "); colon != std::string::npos)
                return line.substr(colon + 2);
    return {};
}

std::string MachineName()
{
    utsname names{};
    if (uname(&names) != 0)
        return {};
    const std::string processor = ProcessorName();
    return fmt::format("{} {}, {}", names.sysname, names.release,
                       processor.empty() ? names.machine : processor);
}

std::string CommandOf(const SCheckJob& inJob)
{
    std::string command = inJob.mCommand;
    if (command.empty())
        command = fmt::format("aaxhost check {} --seed {} --answers {}", QuotedForShell(inJob.mModule),
                              inJob.mSeed, NameOfAnswers(inJob.mAnswers));
    command += fmt::format(" --strictness {}", inJob.mStrictness);
    if (inJob.mLimitSeconds > 0.0)
        command += fmt::format(" --limit {}", inJob.mLimitSeconds);
    if (!inJob.mSizes.mRates.empty())
        command += fmt::format(" --rates {}", fmt::join(inJob.mSizes.mRates, ","));
    if (!inJob.mSizes.mBlocks.empty())
        command += fmt::format(" --blocks {}", fmt::join(inJob.mSizes.mBlocks, ","));
    if (inJob.mRepeats > 1)
        command += fmt::format(" --repeat {}", inJob.mRepeats);
    if (inJob.mChecks != ChecksFor(inJob.mStrictness))
        for (const SCheck* const check : inJob.mChecks)
            command += fmt::format(" --only {}", check->mName);
    for (const SCheckPattern& pattern : inJob.mLeftOut)
        command += " --skip " + QuotedForShell(pattern.mPattern);
    return command;
}
} // namespace

SRunFacts RunFactsOf(const SCheckJob& inJob)
{
    return {inJob.mPlugin.empty() ? inJob.mModule : "Of a survey, around " + inJob.mPlugin,
            ProgramVersion("aaxhost"), fmt::format("{:%Y-%m-%d %H:%M} UTC", fmt::gmtime(std::time(nullptr))),
            MachineName(), CommandOf(inJob)};
}

std::string QuotedForShell(const std::string& inText)
{
    std::string text = "'";
    for (const char letter : inText)
        text += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
    return text + "'";
}
