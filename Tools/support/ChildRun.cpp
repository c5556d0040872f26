#include "Tools/support/ChildRun.h"

#include "Tools/support/WriteAll.h"

#include <algorithm>
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

CChildRun::CChildRun(const std::function<std::string()>& inWork, double inSeconds)
    : mDeadline(Clock::now() +
                std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(inSeconds))),
      mChild([&](int inReport) { DoSilently(inWork, inReport, mHome.Path()); })
{
}

std::optional<SChildEnd> CChildRun::TakeEnd(std::chrono::milliseconds inLongest)
{
    const auto until = std::min(mDeadline, Clock::now() + inLongest);
    ReadReport(until);
    SChildEnd end;
    if (!IsWhole(mBytes))
    {
        end = mChild.Wait(until);
        if (end.mKind == SChildEnd::EKind::Limit)
            return Clock::now() < mDeadline ? std::nullopt : std::optional(end);
        // It may have reported and ended since it was read. What it has left in its pipe is there at once.
        ReadReport(Clock::now() + std::chrono::milliseconds(10));
    }
    if (IsWhole(mBytes))
        return SChildEnd{SChildEnd::EKind::Finished, 0, mBytes.substr(sizeof(Length))};
    return end;
}

void CChildRun::ReadReport(Clock::time_point inUntil)
{
    while (!mIsClosed && !IsWhole(mBytes))
    {
        const std::optional<std::string> more = mChild.Read(inUntil);
        if (more)
            mBytes += *more;
        else if (Clock::now() < inUntil)
            mIsClosed = true;
        else
            return;
    }
}

SChildEnd RunInChild(const std::function<std::string()>& inWork, double inSeconds)
try
{
    CChildRun run(inWork, inSeconds);
    while (true)
        if (auto end = run.TakeEnd(std::chrono::hours(1)))
            return *end;
}
catch (const std::exception&)
{
    return {}; // NotStarted: no folder, pipe or process to be had
}
