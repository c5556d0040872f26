#include "Source/plugins/EffectRegistry.h"
#include "Interfaces/VST2/AEffect.h"

#include "Source/plugins/CVst2Host.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Tests/doubles/ScriptedModule.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace
{
/** The registry never looks into what it hands out, so any distinct addresses serve. */
template <typename Type>
Type* Address(std::size_t inNumber)
{
    constexpr std::size_t kCount = 5000;
    static std::vector<AEffect> places(kCount);
    return reinterpret_cast<Type*>(&places.at(inNumber));
}

TEST(EffectRegistry, EffectsOfOneChainAreToldApartAndTheirPlacesUsedAgain)
{
    auto registry = std::make_unique<CEffectRegistry>();
    constexpr std::size_t kCount = 5000; // several to each chain
    for (int round = 0; round < 3; ++round)
    {
        for (std::size_t i = 0; i < kCount; ++i)
            registry->Add(Address<AEffect>(i), Address<CVst2Host>(i), Address<CVst2Plugin>(i), 1);
        for (std::size_t i = 0; i < kCount; i += 2)
            registry->Remove(Address<AEffect>(i), Address<CVst2Plugin>(i));
        for (std::size_t i = 0; i < kCount; ++i)
        {
            const auto owner = registry->Find(Address<AEffect>(i));
            ASSERT_EQ(owner.mPlugin, i % 2 == 0 ? nullptr : Address<CVst2Plugin>(i));
            ASSERT_EQ(owner.mHost, i % 2 == 0 ? nullptr : Address<CVst2Host>(i));
        }
        for (std::size_t i = 1; i < kCount; i += 2)
            registry->Remove(Address<AEffect>(i), Address<CVst2Plugin>(i));
    }
    EXPECT_EQ(registry->Find(nullptr).mHost, nullptr);
}

TEST(EffectRegistry, SharedEffectBelongsToTheOldestHostAndThenToTheNext)
{
    ScriptedModule module;
    module.Script().mSharesOneEffect = true;
    auto first = std::make_unique<CVst2Host>();
    CVst2Host second;
    CVst2Plugin* const late = second.LoadPlugin(module.Path());
    CVst2Plugin* const early = first->LoadPlugin(module.Path());
    CVst2Plugin* const alsoEarly = first->LoadPlugin(module.Path());
    ASSERT_TRUE(late != nullptr && early != nullptr && alsoEarly != nullptr);
    AEffect* const effect = late->GetEffect();
    ASSERT_EQ(effect, early->GetEffect());
    EXPECT_EQ(gEffectRegistry.Find(effect).mPlugin, early);
    EXPECT_EQ(gEffectRegistry.Find(effect, &second).mPlugin, late);
    EXPECT_TRUE(first->ClosePlugin(early));
    EXPECT_EQ(gEffectRegistry.Find(effect).mPlugin, alsoEarly);
    first.reset();
    EXPECT_EQ(gEffectRegistry.Find(effect).mPlugin, late);
}

TEST(EffectRegistry, EffectThatAnotherHostLoadsWhileItIsBeingClosedIsTheOthers)
{
    for (const bool loads : {true, false})
    {
        SCOPED_TRACE(loads ? "closed" : "given up while it is loaded");
        ScriptedModule module;
        module.Script().mSharesOneEffect = true; // its address is free again inside effClose
        CVst2Host older;
        CVst2Host newer;
        CVst2Plugin* next = nullptr;
        module.Script().mHooks[effClose] = [&](ScriptedEffect& inEffect, const SDispatch&)
        {
            if (next != nullptr)
                return; // the other one's end
            module.Script().mFaults.clear();
            const auto time = [&] { return inEffect.CallHost(audioMasterGetTime); };
            EXPECT_EQ(time(), reinterpret_cast<VstIntPtr>(&older.TimeInfo())); // also while it closes
            next = newer.LoadPlugin(module.Path());
            EXPECT_EQ(time(), reinterpret_cast<VstIntPtr>(&newer.TimeInfo()));
        };
        if (!loads)
            module.Script().mFaults.insert(effGetVstVersion);
        CVst2Plugin* const plugin = older.LoadPlugin(module.Path());
        EXPECT_EQ(plugin != nullptr, loads);
        EXPECT_EQ(older.ClosePlugin(plugin), loads);
        ASSERT_NE(next, nullptr);
        EXPECT_EQ(gEffectRegistry.Find(next->GetEffect()).mPlugin, next);
        EXPECT_TRUE(newer.ClosePlugin(next));
    }
}

TEST(EffectRegistry, ReadersSeeWholeEntriesWhileOthersComeAndGo)
{
    auto registry = std::make_unique<CEffectRegistry>();
    constexpr std::size_t kSteady = 1000;
    constexpr std::size_t kPassing = 4000;
    for (std::size_t i = 0; i < kSteady; ++i)
        registry->Add(Address<AEffect>(i), Address<CVst2Host>(i), Address<CVst2Plugin>(i), 1);
    std::atomic<bool> stop = false;
    std::atomic<long> wrong = 0;
    std::atomic<long> rounds = 0;
    const auto read = [&]
    {
        while (!stop.load())
        {
            for (std::size_t i = 0; i < kPassing; ++i)
            {
                const auto owner = registry->Find(Address<AEffect>(i));
                const bool isWhole =
                    owner.mPlugin == Address<CVst2Plugin>(i) && owner.mHost == Address<CVst2Host>(i);
                const bool isGone = owner.mPlugin == nullptr && owner.mHost == nullptr && i >= kSteady;
                wrong += isWhole || isGone ? 0 : 1;
            }
            ++rounds;
        }
    };
    std::array<std::thread, 3> readers;
    for (std::thread& reader : readers)
        reader = std::thread(read);
    for (int round = 0; round < 200 || rounds.load() < 10; ++round)
    {
        for (std::size_t n = kSteady; n < kPassing; ++n)
        {
            // Backwards every other time, so that a place passes from one effect to another.
            const std::size_t i = round % 2 == 0 ? n : kPassing + kSteady - 1 - n;
            registry->Add(Address<AEffect>(i), Address<CVst2Host>(i), Address<CVst2Plugin>(i), 1);
        }
        for (std::size_t i = kSteady; i < kPassing; ++i)
            registry->Remove(Address<AEffect>(i), Address<CVst2Plugin>(i));
    }
    stop.store(true);
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(wrong.load(), 0);
}
} // namespace
