#include "Tools/vst2probe/ProbePlugin.h"

#include "Tools/vst2probe/CChildProcess.h"
#include "Tools/vst2probe/CPluginInspector.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include <csignal>
#include <fcntl.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
using Json = nlohmann::ordered_json;

constexpr std::int32_t kUsualVersion = 2400;

struct SAttempt
{
    std::optional<SPluginFacts> facts;
    std::string refusal;
    bool askedVersion = false;
};

std::string HowItEnded(const std::optional<int>& inStatus, const std::string& inStage,
                       std::chrono::milliseconds inLimit)
{
    if (!inStatus)
    {
        return fmt::format("it did not come back within {:g} seconds while {}",
                           static_cast<double>(inLimit.count()) / 1000.0, inStage);
    }
    if (WIFSIGNALED(*inStatus))
    {
        return fmt::format("it crashed ({}) while {}", strsignal(WTERMSIG(*inStatus)), inStage);
    }
    return fmt::format("it ended its process (status {}) while {}", WEXITSTATUS(*inStatus), inStage);
}

SAttempt Attempt(const std::string& inProgram, const std::filesystem::path& inPlugin,
                 std::int32_t inEntryVersion, std::chrono::milliseconds inLimit)
{
    const auto deadline = CChildProcess::Clock::now() + inLimit;
    CChildProcess child(inProgram, {kProbeChildOption, std::to_string(inEntryVersion), "--timeout",
                                    fmt::format("{}", static_cast<double>(inLimit.count()) / 1000.0), "--",
                                    inPlugin.string()});
    SAttempt attempt;
    std::string stage = "its process was started";
    while (const std::optional<std::string> line = child.ReadLine(deadline))
    {
        const Json told = Json::parse(*line, nullptr, false);
        if (told.contains("stage"))
        {
            stage = told["stage"];
        }
        else if (told.contains("askedVersion"))
        {
            attempt.askedVersion = true;
        }
        else if (told.contains("refused"))
        {
            attempt.refusal = told["refused"];
            return attempt;
        }
        else if (told.contains("facts"))
        {
            attempt.facts = told["facts"].get<SPluginFacts>();
            return attempt;
        }
    }
    attempt.refusal = HowItEnded(child.Wait(deadline), stage, inLimit);
    return attempt;
}

/** Takes the standard output for itself; what the plug-in writes goes nowhere. @return the descriptor. */
int TakeOutput()
{
    const int output = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 10);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    (void)dup2(nowhere, STDOUT_FILENO); // without it the plug-in's output is lines that mean nothing
    return output;
}

/** A crash has to look like one to the parent, and to leave no file behind. */
void LetCrashesShow()
{
    for (const int number : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT})
    {
        (void)std::signal(number, SIG_DFL); // sanitizers have put in handlers that end with an exit
    }
    const rlimit none{0, 0};
    (void)setrlimit(RLIMIT_CORE, &none); // then there may be a core file
}

void WriteLine(int inOutput, const Json& inMessage)
{
    // Plug-ins' texts are in any encoding.
    const std::string line = inMessage.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
    for (std::size_t done = 0; done < line.size();)
    {
        const ssize_t count = write(inOutput, line.data() + done, line.size() - done);
        if (count <= 0)
        {
            _exit(EXIT_FAILURE); // nobody listens
        }
        done += static_cast<std::size_t>(count);
    }
}
} // namespace

SProbeResult ProbePlugin(const std::string& inProgram, const std::filesystem::path& inPlugin,
                         std::chrono::milliseconds inLimit)
{
    SProbeResult result;
    SAttempt attempt = Attempt(inProgram, inPlugin, 0, inLimit);
    result.askedVersion = attempt.askedVersion;
    if (!attempt.facts && attempt.askedVersion)
    {
        SAttempt second = Attempt(inProgram, inPlugin, kUsualVersion, inLimit);
        if (second.facts)
        {
            result.entryVersion = kUsualVersion;
            result.refusalOfZero = attempt.refusal;
        }
        attempt = std::move(second);
    }
    result.facts = std::move(attempt.facts);
    result.refusal = std::move(attempt.refusal);
    return result;
}

void RunProbeChild(const std::filesystem::path& inPlugin, std::int32_t inEntryVersion,
                   std::chrono::milliseconds inLimit)
{
    const int output = TakeOutput();
    LetCrashesShow();
    // Ends a child that hangs even if its parent is gone; the parent is first otherwise.
    (void)alarm(static_cast<unsigned>(std::chrono::ceil<std::chrono::seconds>(inLimit).count()) + 5);
    CPluginInspector(inEntryVersion, [output](const Json& inMessage) { WriteLine(output, inMessage); })
        .Run(inPlugin.string());
    _exit(EXIT_SUCCESS); // what the plug-in does at an ordinary exit is not asked
}
