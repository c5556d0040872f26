#pragma once
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

class CVst2Host;
class CVst2Plugin;
struct AEffect;

/**
 * Which plug-in object an effect pointer belongs to.
 *
 * Threads: Find on any, without a lock and at a cost that doesn't grow with the number of effects; Add,
 * Remove and MarkClosing lock among each other. A table of chains: a chain only ever grows, so a reader can
 * walk it while it is written; the place of a removed effect is used again by the next one in the same chain,
 * and memory is freed with the registry.
 */
class CEffectRegistry
{
public:
    constexpr CEffectRegistry() = default;
    CEffectRegistry(const CEffectRegistry&) = delete;
    CEffectRegistry& operator=(const CEffectRegistry&) = delete;
    ~CEffectRegistry();

    /**
     * @param inEffect not null. Some plug-ins hand out one effect for all instances, so one may be added
     * repeatedly.
     * @param inHost   its serial decides which of several plug-ins with the same effect is found: the lowest,
     * and within one host the one that was added first.
     */
    void Add(AEffect* inEffect, CVst2Host* inHost, CVst2Plugin* inPlugin, std::uint32_t inHostSerial);
    /**
     * From now on any other plug-in with the same effect is found first: a plug-in that ends frees its effect
     * when it likes, and another one may get the same address. Does nothing when that pair was not added.
     */
    void MarkClosing(const AEffect* inEffect, const CVst2Plugin* inPlugin) noexcept;
    /** Does nothing when that pair was not added. */
    void Remove(const AEffect* inEffect, const CVst2Plugin* inPlugin) noexcept;

    struct SOwner
    {
        CVst2Host* mHost = nullptr;
        CVst2Plugin* mPlugin = nullptr;
    };
    /**
     * @param inHost when not null, only this host's plug-ins are looked at.
     * @return nulls when nobody owns the effect, or it is null.
     */
    SOwner Find(const AEffect* inEffect, const CVst2Host* inHost = nullptr) const noexcept;

private:
    /** Among 1,000 effects hardly two share a chain. The table is zero until it is used, so that it costs the
     * pages in use. */
    static constexpr std::size_t kBucketCount = 8192;
    /** Bits of a slot's order, above every serial that hosts reach. With the first a plug-in is found after
     * all others that have its effect; with the second the slot is being filled. */
    static constexpr std::uint64_t kClosing = std::uint64_t{1} << 63;
    static constexpr std::uint64_t kFree = std::uint64_t{1} << 62;

    /**
     * One thread writes at a time. `Add` first stores `mOrder` with `kFree` in it, then the three pointers,
     * then `mOrder` with a number that no other addition has. A reader loads `mOrder`, the pointers and
     * `mOrder` again. Where a pointer is of a later addition than the first `mOrder`, loading it (acquire)
     * shows that addition's first store: the second `mOrder` differs, and the reader tries again.
     */
    struct SSlot
    {
        std::atomic<AEffect*> mEffect = nullptr; // null: free
        std::atomic<CVst2Host*> mHost = nullptr;
        std::atomic<CVst2Plugin*> mPlugin = nullptr;
        std::atomic<std::uint64_t> mOrder = 0; // of the host and of the addition, with kClosing or kFree
        std::atomic<SSlot*> mNext = nullptr;
    };

    static std::size_t BucketOf(const AEffect* inEffect) noexcept;
    SSlot& FreeSlot(SSlot& inFirst);
    /** @return null when that pair was not added. */
    SSlot* FindSlot(const AEffect* inEffect, const CVst2Plugin* inPlugin) noexcept;

    std::array<SSlot, kBucketCount> mBuckets{};
    std::uint32_t mAdded = 0;
};

/**
 * The registry of this module: every loaded plug-in of every host. Written by whoever loads and closes
 * plug-ins, read by host callbacks on any thread.
 */
extern constinit CEffectRegistry gEffectRegistry;

// Defined here because some plug-ins call their host once per sample: the callback has the search in itself.

inline std::size_t CEffectRegistry::BucketOf(const AEffect* inEffect) noexcept
{
    // Multiplied by 2^64 divided by the golden ratio: the top bits depend on every bit of the address.
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15U;
    constexpr int kShift = 51;
    static_assert((UINT64_MAX >> kShift) + 1 == kBucketCount);
    return static_cast<std::size_t>((reinterpret_cast<std::uintptr_t>(inEffect) * kSpread) >> kShift);
}

inline CEffectRegistry::SOwner CEffectRegistry::Find(const AEffect* inEffect,
                                                     const CVst2Host* inHost) const noexcept
{
    SOwner owner;
    if (inEffect == nullptr)
        return owner;
    std::uint64_t lowest = UINT64_MAX;
    const SSlot* slot = &mBuckets[BucketOf(inEffect)];
    while (slot != nullptr)
    {
        const std::uint64_t order = slot->mOrder.load(std::memory_order_acquire);
        if (slot->mEffect.load(std::memory_order_acquire) == inEffect)
        {
            const SOwner candidate{slot->mHost.load(std::memory_order_acquire),
                                   slot->mPlugin.load(std::memory_order_acquire)};
            if (slot->mOrder.load(std::memory_order_acquire) != order) [[unlikely]]
                continue; // it has changed meanwhile: once more
            if (order < lowest && (inHost == nullptr || candidate.mHost == inHost))
            {
                owner = candidate;
                lowest = order;
            }
        }
        slot = slot->mNext.load(std::memory_order_acquire);
    }
    return owner;
}
