#include "Source/plugins/EffectRegistry.h"

#include <mutex>

namespace
{
// Whoever writes into any registry holds it. Not a part of the registry, which is all zero and so takes no
// room in the module's file; a mutex is not zero everywhere.
constinit std::mutex gWriters;
} // namespace

constinit CEffectRegistry gEffectRegistry;

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
    const std::lock_guard lock(gWriters);
    SSlot& slot = FreeSlot(mBuckets[BucketOf(inEffect)]);
    slot.host.store(inHost, std::memory_order_release);
    slot.plugin.store(inPlugin, std::memory_order_release);
    slot.order.store((static_cast<std::uint64_t>(inHostSerial) << 32) | ++mAdded, std::memory_order_release);
    slot.effect.store(inEffect, std::memory_order_release);
}

void CEffectRegistry::MarkClosing(const AEffect* inEffect, const CVst2Plugin* inPlugin) noexcept
{
    const std::lock_guard lock(gWriters);
    if (SSlot* const slot = FindSlot(inEffect, inPlugin))
        slot->order.store(slot->order.load() | kClosing, std::memory_order_release);
}

void CEffectRegistry::Remove(const AEffect* inEffect, const CVst2Plugin* inPlugin) noexcept
{
    const std::lock_guard lock(gWriters);
    if (SSlot* const slot = FindSlot(inEffect, inPlugin))
        slot->effect.store(nullptr, std::memory_order_release);
}

CEffectRegistry::SSlot* CEffectRegistry::FindSlot(const AEffect* inEffect,
                                                  const CVst2Plugin* inPlugin) noexcept
{
    if (inEffect == nullptr)
        return nullptr;
    SSlot* slot = &mBuckets[BucketOf(inEffect)];
    while (slot != nullptr && (slot->effect.load() != inEffect || slot->plugin.load() != inPlugin))
        slot = slot->next.load();
    return slot;
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
