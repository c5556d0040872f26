#pragma once
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

/** Whose code a call comes from. */
enum class EGuardOwner : std::size_t
{
    kModule,
    kPlugin
};
inline constexpr std::size_t kGuardOwners = 2;

/**
 * How often each watched function was called by whom while a block was rendered.
 *
 * Threads: any, without a lock.
 */
class CCallCounts
{
public:
    static constexpr std::size_t kMostFunctions = 64;

    /** From now on the calls of this thread count, until the matching `End`. */
    static void Begin() noexcept;
    static void End() noexcept;
    static bool IsInRenderCall() noexcept;

    void AddRenderCall() noexcept { mRenderCalls.fetch_add(1, std::memory_order_relaxed); }
    void Add(EGuardOwner inOwner, std::size_t inFunction) noexcept;
    std::uint64_t Of(EGuardOwner inOwner, std::size_t inFunction) const noexcept;
    std::uint64_t RenderCalls() const noexcept { return mRenderCalls.load(std::memory_order_relaxed); }

private:
    using Counts = std::array<std::atomic<std::uint64_t>, kMostFunctions>;

    std::atomic<std::uint64_t> mRenderCalls = 0;
    std::array<Counts, kGuardOwners> mCounts{};
};

/** What the counts say, one line for the module and one for the plug-in. */
std::string ReportOf(const CCallCounts& inCounts);
