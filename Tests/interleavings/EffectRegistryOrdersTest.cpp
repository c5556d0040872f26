#include "Tests/interleavings/ModelAtomic.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>

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
    void End(std::uintptr_t inOwner)
    {
        mRegistry.MarkClosing(mEffect, Address<CVst2Plugin>(inOwner));
        mRegistry.Remove(mEffect, Address<CVst2Plugin>(inOwner));
    }
    std::string Problem(bool inMayBeNone) const
    {
        for (std::uintptr_t owner = inMayBeNone ? 0 : 1; owner < 4; ++owner)
            if (mFound.mHost == Address<CVst2Host>(owner) && mFound.mPlugin == Address<CVst2Plugin>(owner))
                return {};
        return mFound.mHost == nullptr ? "No owner was found." : "An owner of two halves was found.";
    }

    AEffect* const mEffect = Address<AEffect>(9);
    CEffectRegistry mRegistry;
    CEffectRegistry::SOwner mFound;
};

TEST(EffectRegistryOrders, ACallFindsAWholeOwnerWhilePluginsComeAndGo)
{
    struct SRow
    {
        const char* mWhat;
        bool mMayBeNone;
        void (*mChange)(SShared&);
    };
    for (const SRow& row :
         {SRow{"the next plug-in gets the address of the one before", true,
               [](SShared& s) { s.End(1), s.Add(2); }},
          SRow{"plug-ins share an effect", false, [](SShared& s) { s.Add(2), s.End(1), s.Add(3); }}})
    {
        SCOPED_TRACE(row.mWhat);
        const STried tried = TryAllOrders(
            [&]
            {
                const auto shared = std::make_shared<SShared>();
                shared->Add(1);
                return SThreads{{[=] { row.mChange(*shared); },
                                 [=] { shared->mFound = shared->mRegistry.Find(shared->mEffect); }},
                                [=] { return shared->Problem(row.mMayBeNone); }};
            });
        EXPECT_EQ(tried.mProblem, "");
        EXPECT_GT(tried.mOrders, 50U);
    }
}
} // namespace
