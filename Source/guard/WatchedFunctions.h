#pragma once
#include "Source/guard/CallCounts.h"

#include <array>
#include <cstddef>
#include <span>

enum class EWatchedKind
{
    kMemory,
    kLock,
    kBlocking
};

/** A function that has no place in a render call, and what is called in its place to count that. */
struct SWatchedFunction
{
    const char* mName = nullptr; // as the linker has it
    const char* mText = nullptr; // as a person knows it
    EWatchedKind mKind = EWatchedKind::kMemory;
    std::array<void*, kGuardOwners> mReplacements{};
};

std::span<const SWatchedFunction> WatchedFunctions() noexcept;
/** What the replacement calls when it has counted. Set before the replacement is put to use. */
void SetOriginal(EGuardOwner inOwner, std::size_t inFunction, void* inOriginal) noexcept;
/** The counts of this module. */
CCallCounts& GuardCounts() noexcept;
