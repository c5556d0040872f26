#include "Source/plugins/EffectRegistry.h"

namespace
{
/** Written by whoever loads and closes plug-ins, under its own mutex; read by host callbacks on any thread.
 */
constinit CEffectRegistry gEffectRegistry;
} // namespace

CEffectRegistry& GetEffectRegistry() noexcept { return gEffectRegistry; }

CEffectRegistry::~CEffectRegistry()
{
    for (const SSlot& first : mBuckets)
    {
        for (SSlot* slot = first.next.load(); slot != nullptr;)
        {
            SSlot* const next = slot->next.load();
            delete slot;
            slot = next;
        }
    }
}

void CEffectRegistry::Add(AEffect* inEffect, CVst2Host* inHost, CVst2Plugin* inPlugin,
                          std::uint32_t inHostSerial)
{
    const std::lock_guard lock(mWriters);
    SSlot& slot = FreeSlot(mBuckets[BucketOf(inEffect)]);
    slot.host.store(inHost, std::memory_order_release);
    slot.plugin.store(inPlugin, std::memory_order_release);
    slot.order.store((static_cast<std::uint64_t>(inHostSerial) << 32) | ++mAdded, std::memory_order_release);
    slot.effect.store(inEffect, std::memory_order_release);
}

void CEffectRegistry::Remove(const AEffect* inEffect, const CVst2Plugin* inPlugin) noexcept
{
    if (inEffect == nullptr)
    {
        return;
    }
    const std::lock_guard lock(mWriters);
    for (SSlot* slot = &mBuckets[BucketOf(inEffect)]; slot != nullptr; slot = slot->next.load())
    {
        if (slot->effect.load() == inEffect && slot->plugin.load() == inPlugin)
        {
            slot->effect.store(nullptr, std::memory_order_release);
            return;
        }
    }
}

CEffectRegistry::SOwner CEffectRegistry::Find(const AEffect* inEffect, const CVst2Host* inHost) const noexcept
{
    SOwner owner;
    if (inEffect == nullptr)
    {
        return owner;
    }
    std::uint64_t lowest = UINT64_MAX;
    for (const SSlot* slot = &mBuckets[BucketOf(inEffect)]; slot != nullptr;
         slot = slot->next.load(std::memory_order_acquire))
    {
        if (slot->effect.load(std::memory_order_acquire) != inEffect)
        {
            continue;
        }
        const SOwner candidate{slot->host.load(std::memory_order_acquire),
                               slot->plugin.load(std::memory_order_acquire)};
        const std::uint64_t order = slot->order.load(std::memory_order_acquire);
        // Read again: the slot may have passed to another effect in between.
        const bool isWhole = slot->effect.load(std::memory_order_acquire) == inEffect;
        if (isWhole && order < lowest && (inHost == nullptr || candidate.host == inHost))
        {
            owner = candidate;
            lowest = order;
        }
    }
    return owner;
}

std::size_t CEffectRegistry::BucketOf(const AEffect* inEffect) noexcept
{
    // Multiplied by 2^64 divided by the golden ratio: the top bits depend on every bit of the address.
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15U;
    constexpr int kShift = 54;
    static_assert((UINT64_MAX >> kShift) + 1 == kBucketCount);
    return static_cast<std::size_t>((reinterpret_cast<std::uintptr_t>(inEffect) * kSpread) >> kShift);
}

CEffectRegistry::SSlot& CEffectRegistry::FreeSlot(SSlot& inFirst)
{
    SSlot* slot = &inFirst;
    while (slot->effect.load() != nullptr)
    {
        SSlot* next = slot->next.load();
        if (next == nullptr)
        {
            next = new SSlot; // belongs to the chain, freed in the destructor
            slot->next.store(next, std::memory_order_release);
        }
        slot = next;
    }
    return *slot;
}
