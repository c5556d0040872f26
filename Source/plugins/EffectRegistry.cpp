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
        for (SSlot* slot = first.mNext.load(); slot != nullptr;)
        {
            SSlot* const next = slot->mNext.load();
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
    slot.mOrder.store(slot.mOrder.load() | kFree, std::memory_order_release);
    slot.mHost.store(inHost, std::memory_order_release);
    slot.mPlugin.store(inPlugin, std::memory_order_release);
    slot.mEffect.store(inEffect, std::memory_order_release);
    slot.mOrder.store((static_cast<std::uint64_t>(inHostSerial) << 32) | ++mAdded, std::memory_order_release);
}

void CEffectRegistry::MarkClosing(const AEffect* inEffect, const CVst2Plugin* inPlugin) noexcept
{
    const std::lock_guard lock(gWriters);
    if (SSlot* const slot = FindSlot(inEffect, inPlugin))
        slot->mOrder.store(slot->mOrder.load() | kClosing, std::memory_order_release);
}

void CEffectRegistry::Remove(const AEffect* inEffect, const CVst2Plugin* inPlugin) noexcept
{
    const std::lock_guard lock(gWriters);
    if (SSlot* const slot = FindSlot(inEffect, inPlugin))
        slot->mEffect.store(nullptr, std::memory_order_release);
}

CEffectRegistry::SSlot* CEffectRegistry::FindSlot(const AEffect* inEffect,
                                                  const CVst2Plugin* inPlugin) noexcept
{
    if (inEffect == nullptr)
        return nullptr;
    SSlot* slot = &mBuckets[BucketOf(inEffect)];
    while (slot != nullptr && (slot->mEffect.load() != inEffect || slot->mPlugin.load() != inPlugin))
        slot = slot->mNext.load();
    return slot;
}

CEffectRegistry::SSlot& CEffectRegistry::FreeSlot(SSlot& inFirst)
{
    SSlot* slot = &inFirst;
    while (slot->mEffect.load() != nullptr)
    {
        SSlot* next = slot->mNext.load();
        if (next == nullptr)
        {
            next = new SSlot; // belongs to the chain, freed in the destructor
            slot->mNext.store(next, std::memory_order_release);
        }
        slot = next;
    }
    return *slot;
}
