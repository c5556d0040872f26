#include "Source/guard/CallCounts.h"

#include "Source/guard/WatchedFunctions.h"

#include <algorithm>
#include <initializer_list>

namespace
{
thread_local int gRenderDepth = 0; // how many render calls this thread is in

using Kinds = std::initializer_list<EForbiddenKind>;

/** How often functions of these kinds were called, in all and each. */
std::string CountsOf(Kinds inKinds, const CCallCounts& inCounts, EGuardOwner inOwner)
{
    std::uint64_t sum = 0;
    std::string names;
    for (std::size_t i = 0; i < WatchedFunctions().size(); ++i)
    {
        const SWatchedFunction& function = WatchedFunctions()[i];
        const std::uint64_t count = inCounts.Of(inOwner, i);
        if (count == 0 || std::ranges::find(inKinds, function.mKind) == inKinds.end())
            continue;
        sum += count;
        names += (names.empty() ? " (" : ", ") + std::string(function.mText) + ' ' + std::to_string(count);
    }
    return std::to_string(sum) + (sum != 0 ? names + ')' : std::string());
}

std::string LineOf(const char* inName, const CCallCounts& inCounts, EGuardOwner inOwner)
{
    const auto counts = [&](Kinds kinds) { return CountsOf(kinds, inCounts, inOwner); };
    using enum EForbiddenKind;
    return std::string("  ") + inName + ": allocations and releases " + counts({kAllocation, kRelease}) +
           ", locks " + counts({kLock}) + ", blocking calls " + counts({kBlocking}) + '\n';
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
