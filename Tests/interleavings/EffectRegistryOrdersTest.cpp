#include "Tests/interleavings/ModelAtomic.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <set>
#include <string>

#include "Source/plugins/EffectRegistry.cpp"

namespace
{
/** The registry never looks into what it hands out, so any distinct addresses serve. */
template <class T>
T* Address(std::uintptr_t inNumber)
{
    return reinterpret_cast<T*>(inNumber * 64);
}

/** A registry with one effect, and what a host callback finds in it. */
struct SShared
{
    void Add(std::uintptr_t inOwner)
    {
        mRegistry.Add(mEffect, Address<CVst2Host>(inOwner), Address<CVst2Plugin>(inOwner),
                      static_cast<std::uint32_t>(inOwner));
    }
    void MarkClosing(std::uintptr_t inOwner)
    {
        mRegistry.MarkClosing(mEffect, Address<CVst2Plugin>(inOwner));
    }
    void Remove(std::uintptr_t inOwner) { mRegistry.Remove(mEffect, Address<CVst2Plugin>(inOwner)); }
    /** @return the owner's number, 0 for none. */
    std::uintptr_t Found() const
    {
        for (std::uintptr_t owner = 0; owner < 4; ++owner)
            if (mFound.mHost == Address<CVst2Host>(owner) && mFound.mPlugin == Address<CVst2Plugin>(owner))
                return owner;
        return kTwoHalves;
    }

    static constexpr std::uintptr_t kTwoHalves = 99;
    AEffect* const mEffect = Address<AEffect>(9);
    CEffectRegistry mRegistry;
    CEffectRegistry::SOwner mFound;
};

TEST(EffectRegistryOrders, ACallFindsAWholeOwnerWhilePluginsComeAndGo)
{
    struct SRow
    {
        const char* mWhat;
        std::set<std::uintptr_t> mOwners; // that may be found; 0 for none
        void (*mChange)(SShared&);
    };
    for (const SRow& row : {SRow{"the next plug-in gets the address of the one before",
                                 {0, 1, 2},
                                 [](SShared& s) { s.Remove(1), s.Add(2); }},
                            SRow{"plug-ins share an effect",
                                 {1, 2},
                                 [](SShared& s) { s.Add(2), s.MarkClosing(1), s.Remove(1); }},
                            SRow{"the oldest stays", {1}, [](SShared& s) { s.Add(2); }}})
    {
        SCOPED_TRACE(row.mWhat);
        const STried tried = TryAllOrders(
            [&]
            {
                const auto shared = std::make_shared<SShared>();
                shared->Add(1);
                return SThreads{{[=] { row.mChange(*shared); },
                                 [=] { shared->mFound = shared->mRegistry.Find(shared->mEffect); }},
                                [=]
                                {
                                    return row.mOwners.contains(shared->Found())
                                               ? std::string()
                                               : "Found was " + std::to_string(shared->Found());
                                }};
            });
        EXPECT_EQ(tried.mProblem, "");
        EXPECT_GT(tried.mOrders, 10U);
    }
}
} // namespace
