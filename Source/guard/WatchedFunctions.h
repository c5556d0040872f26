#pragma once
#include "Source/guard/CallCounts.h"
#include "Source/guard/ForbiddenFunctions.h"

#include <array>
#include <cstddef>
#include <span>

/** A function that has no place in a render call, and what is called in its place to count that. */
struct SWatchedFunction : SForbiddenFunction
{
    std::array<void*, kGuardOwners> mReplacements{};
};

std::span<const SWatchedFunction> WatchedFunctions() noexcept;
/** What the replacement calls when it has counted. Set before the replacement is put to use. */
void SetOriginal(EGuardOwner inOwner, std::size_t inFunction, void* inOriginal) noexcept;
/** The counts of this module. */
CCallCounts& GuardCounts() noexcept;
