#include "Source/guard/CallCounts.h"

#include "Source/guard/WatchedFunctions.h"

namespace
{
thread_local int gRenderDepth = 0; // how many render calls this thread is in

void AppendKind(EWatchedKind inKind, const CCallCounts& inCounts, EGuardOwner inOwner, std::string& ioLine)
{
    std::uint64_t sum = 0;
    std::string names;
    for (std::size_t i = 0; i < WatchedFunctions().size(); ++i)
    {
        const std::uint64_t count = inCounts.Of(inOwner, i);
        if (WatchedFunctions()[i].mKind != inKind || count == 0)
            continue;
        sum += count;
        names += (names.empty() ? " (" : ", ") + std::string(WatchedFunctions()[i].mText) + ' ' +
                 std::to_string(count);
    }
    ioLine += std::to_string(sum) + (sum != 0 ? names + ')' : std::string());
}

std::string LineOf(const char* inName, const CCallCounts& inCounts, EGuardOwner inOwner)
{
    std::string line = std::string("  ") + inName + ": allocations and releases ";
    AppendKind(EWatchedKind::kMemory, inCounts, inOwner, line);
    line += ", locks ";
    AppendKind(EWatchedKind::kLock, inCounts, inOwner, line);
    line += ", blocking calls ";
    AppendKind(EWatchedKind::kBlocking, inCounts, inOwner, line);
    return line + '\n';
}
} // namespace

void CCallCounts::Begin() noexcept { ++gRenderDepth; }
void CCallCounts::End() noexcept { --gRenderDepth; }
bool CCallCounts::IsInRenderCall() noexcept { return gRenderDepth > 0; }

void CCallCounts::Add(EGuardOwner inOwner, std::size_t inFunction) noexcept
{
    mCounts[static_cast<std::size_t>(inOwner)][inFunction].fetch_add(1, std::memory_order_relaxed);
}

std::uint64_t CCallCounts::Of(EGuardOwner inOwner, std::size_t inFunction) const noexcept
{
    return mCounts[static_cast<std::size_t>(inOwner)][inFunction].load(std::memory_order_relaxed);
}

std::string ReportOf(const CCallCounts& inCounts)
{
    return "Real-time guard, " + std::to_string(inCounts.RenderCalls()) + " render calls:\n" +
           LineOf("the module", inCounts, EGuardOwner::kModule) +
           LineOf("the plug-in", inCounts, EGuardOwner::kPlugin);
}
