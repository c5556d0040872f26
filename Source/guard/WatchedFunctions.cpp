#include "Source/guard/WatchedFunctions.h"

#include <atomic>
#include <tuple>
#include <utility>

namespace
{
// Render threads count; the report reads when the module goes.
constinit CCallCounts gCounts;
// The thread that puts the replacements to use stores (release) before that; any thread loads (acquire).
constinit std::array<std::array<std::atomic<void*>, CCallCounts::kMostFunctions>, kGuardOwners> gOriginals{};

template <EGuardOwner kOwner, std::size_t kFunction, class Result, class... Arguments>
Result CountAndCall(Arguments... inArguments)
{
    if (CCallCounts::IsInRenderCall())
        gCounts.Add(kOwner, kFunction);
    void* const original =
        gOriginals[static_cast<std::size_t>(kOwner)][kFunction].load(std::memory_order_acquire);
    return reinterpret_cast<Result (*)(Arguments...)>(original)(inArguments...);
}

constexpr std::size_t kCount = std::tuple_size_v<decltype(kForbiddenFunctions)>;
static_assert(kCount <= CCallCounts::kMostFunctions);

template <std::size_t kFunction, class Result, class... Arguments>
SWatchedFunction Watch(const SForbiddenCall<Result(Arguments...)>& inFunction) noexcept
{
    return {inFunction,
            {reinterpret_cast<void*>(&CountAndCall<EGuardOwner::kModule, kFunction, Result, Arguments...>),
             reinterpret_cast<void*>(&CountAndCall<EGuardOwner::kPlugin, kFunction, Result, Arguments...>)}};
}

template <std::size_t... kFunctions>
std::array<SWatchedFunction, kCount> WatchAll(std::index_sequence<kFunctions...>) noexcept
{
    return {Watch<kFunctions>(std::get<kFunctions>(kForbiddenFunctions))...};
}
} // namespace

std::span<const SWatchedFunction> WatchedFunctions() noexcept
{
    static const std::array<SWatchedFunction, kCount> functions =
        WatchAll(std::make_index_sequence<kCount>());
    return functions;
}

void SetOriginal(EGuardOwner inOwner, std::size_t inFunction, void* inOriginal) noexcept
{
    gOriginals[static_cast<std::size_t>(inOwner)][inFunction].store(inOriginal, std::memory_order_release);
}

CCallCounts& GuardCounts() noexcept { return gCounts; }
