#include "Tools/support/ChildRun.h"

#include "Tools/support/CTemporaryFolder.h"
#include "Tools/support/WriteAll.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>

#include <sys/resource.h>

namespace
{
using Clock = CChildProcess::Clock;

/** The text goes behind its length: a process that dies before the end leaves less. */
using Length = std::uint64_t;

void DoSilently(const std::function<std::string()>& inWork, int inReport, const std::string& inHome)
{
    const rlimit noCore{0, 0};
    (void)setrlimit(RLIMIT_CORE, &noCore); // only saves time
    (void)setenv("HOME", inHome.c_str(), 1);
    SilenceStandardFiles();
    const std::string text = inWork();
    const Length length = text.size();
    std::string bytes(sizeof length, '\0');
    std::memcpy(bytes.data(), &length, sizeof length);
    (void)WriteAll(inReport, bytes + text); // what is missing tells the parent that it was cut
}

bool IsWhole(const std::string& inBytes)
{
    Length length = 0;
    if (inBytes.size() < sizeof length)
        return false;
    std::memcpy(&length, inBytes.data(), sizeof length);
    return inBytes.size() - sizeof length >= length;
}
} // namespace

SChildEnd RunInChild(const std::function<std::string()>& inWork, double inSeconds)
try
{
    const CTemporaryFolder home;
    const auto deadline =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(inSeconds));
    CChildProcess child([&](int inReport) { DoSilently(inWork, inReport, home.Path()); });
    std::string bytes;
    while (!IsWhole(bytes))
    {
        const std::optional<std::string> more = child.Read(deadline);
        if (!more)
            return child.Wait(deadline);
        bytes += *more;
    }
    return {SChildEnd::EKind::Finished, 0, bytes.substr(sizeof(Length))};
}
catch (const std::exception&)
{
    return {}; // NotStarted: no folder, pipe or process to be had
}
