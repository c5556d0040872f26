#include "Platform/PointerState.h"
#include "Source/plugins/CVst2Host.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/MouseModifiers.h"
#include "Tests/doubles/ScriptedModule.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{
using Lines = std::vector<std::string>;

TEST(Host, ListAndCurrentHostFollowConstructionMarkingAndDestruction)
{
    const auto base = gVctHosts;
    pVst2Host.store(nullptr);
    auto first = std::make_unique<CVst2Host>();
    CVst2Host second;
    EXPECT_EQ(pVst2Host.load(), first.get());
    ASSERT_EQ(gVctHosts.size(), base.size() + 2);
    EXPECT_EQ(gVctHosts.end()[-2], first.get());
    EXPECT_EQ(gVctHosts.back(), &second);
    second.SetActualAAXHost();
    EXPECT_EQ(pVst2Host.load(), &second);
    first.reset();
    EXPECT_EQ(pVst2Host.load(), nullptr); // though the other is alive
    EXPECT_EQ(gVctHosts.size(), base.size() + 1);
    EXPECT_EQ(gVctHosts.back(), &second);
    CVst2Host third;
    EXPECT_EQ(pVst2Host.load(), &third);
}

TEST(Host, PluginIsInitializedAtOnceOnlyWithAKnownBlockSizeAndRate)
{
    struct SRow
    {
        long mBlockSize;
        float mSampleRate;
        int mState;
    };
    for (const SRow& row :
         {SRow{1, 44100.0F, 2}, SRow{0, 44100.0F, 1}, SRow{512, 0.0F, 1}, SRow{-1, -1.0F, 1}})
    {
        SCOPED_TRACE(row.mBlockSize);
        ScriptedModule module;
        CVst2Host host;
        EXPECT_TRUE(host.InitPlugins());
        host.SetBufferSize(row.mBlockSize);
        host.SetSampleRate(row.mSampleRate);
        CVst2Plugin* const plugin = host.LoadPlugin(module.Path());
        ASSERT_NE(plugin, nullptr);
        EXPECT_EQ(plugin->GetState(), row.mState);
        EXPECT_TRUE(host.InitPlugins());
        EXPECT_EQ(plugin->GetState(), 2);
    }
}

TEST(Host, ExceptionWhileInitializingPassesAndLeavesAnOwnedPlugin)
{
    ScriptedModule module;
    CVst2Host host;
    host.SetBufferSize(64);
    host.SetSampleRate(44100.0F);
    module.Script().mHooks[effOpen] = [](ScriptedEffect&, const SDispatch&)
    { throw std::runtime_error("open"); };
    EXPECT_THROW((void)host.LoadPlugin(module.Path()), std::runtime_error);
    ASSERT_EQ(host.Plugins().size(), 1U);
    EXPECT_EQ(host.Plugins()[0]->GetState(), 1);
    host.Reset();
    EXPECT_TRUE(module.Script().mInstances.empty());
}

TEST(Host, ClosedPluginIsUnknownAfterwardsAndOthersKeepTheirPlaces)
{
    ScriptedModule module;
    CVst2Host host;
    CVst2Host other;
    CVst2Plugin* const first = host.LoadPlugin(module.Path());
    CVst2Plugin* const second = host.LoadPlugin(module.Path());
    ASSERT_TRUE(first != nullptr && second != nullptr);
    EXPECT_EQ(host.GetEffectIndex(second->GetEffect()), 1);
    EXPECT_EQ(other.GetEffectIndex(second->GetEffect()), -1);
    EXPECT_EQ(host.GetEffectIndex(nullptr), -1);
    EXPECT_FALSE(other.ClosePlugin(first));
    EXPECT_TRUE(host.ClosePlugin(first));
    EXPECT_FALSE(host.ClosePlugin(first));
    EXPECT_FALSE(host.ClosePlugin(nullptr));
    EXPECT_EQ(host.GetEffectIndex(second->GetEffect()), 0);
    EXPECT_EQ(module.Script().mInstances.size(), 1U);
}

TEST(Host, CallsMadeWhileClosingAreAnsweredByTheHostUnlessItIsGoing)
{
    ScriptedModule module;
    std::vector<VstIntPtr> versions;
    for (const auto opcode : {effMainsChanged, effClose})
    {
        module.Script().mHooks[opcode] = [&versions](ScriptedEffect& inEffect, const SDispatch&)
        { versions.push_back(inEffect.CallHost(audioMasterVersion)); };
    }
    auto host = std::make_unique<CVst2Host>();
    EXPECT_TRUE(host->ClosePlugin(host->LoadPlugin(module.Path())));
    EXPECT_EQ(versions, (std::vector<VstIntPtr>{2400, 2400}));
    versions.clear();
    (void)host->LoadPlugin(module.Path()); // closed by the host's end
    host.reset();
    EXPECT_EQ(versions, (std::vector<VstIntPtr>{0, 0}));
    EXPECT_TRUE(module.Script().mInstances.empty());
}

TEST(Host, IdleIsSentOnlyAfterItWasAskedFor)
{
    ScriptedModule module;
    CVst2Host host;
    CVst2Plugin* const silent = host.LoadPlugin(module.Path());
    CVst2Plugin* const asking = host.LoadPlugin(module.Path());
    ASSERT_TRUE(silent != nullptr && asking != nullptr);
    (void)module.Script().TakeLog(); // what loading sent
    host.Process();
    EXPECT_TRUE(module.Script().TakeLog().empty());
    EXPECT_EQ(module.Script().mInstances[1]->CallHost(audioMasterNeedIdle), 0);
    host.Process();
    host.Process();
    EXPECT_EQ(module.Script().TakeLog(), (Lines{"effIdle", "effIdle"}));
}

TEST(Host, TempoIsValidOnlyWhilePositiveAndTheLastOneStays)
{
    struct SRow
    {
        float mSet;
        double mTempo;
        int mFlags;
    };
    CVst2Host host;
    EXPECT_EQ(host.TimeInfo().smpteFrameRate, 25);
    EXPECT_EQ(host.TimeInfo().flags, 1026);
    for (const SRow& row : {SRow{90.5F, 90.5, 1026}, SRow{0.0F, 90.5, 2}, SRow{60.0F, 60.0, 1026},
                            SRow{-1.0F, 60.0, 2}, SRow{std::numeric_limits<float>::quiet_NaN(), 60.0, 2}})
    {
        SCOPED_TRACE(row.mSet);
        host.SetTempo(row.mSet);
        EXPECT_EQ(host.TimeInfo().tempo, row.mTempo);
        EXPECT_EQ(host.TimeInfo().flags, row.mFlags);
    }
    host.SetSampleRate(96000.0F);
    EXPECT_EQ(host.TimeInfo().sampleRate, 96000.0);
    host.InitTimeInfo();
    EXPECT_EQ(host.TimeInfo().sampleRate, 44100.0);
    EXPECT_EQ(host.TimeInfo().tempo, 120.0);
    EXPECT_EQ(host.GetSampleRate(), 96000.0F);
}

TEST(MouseModifiers, EachKeyAndButtonGivesItsBitAndNoOther)
{
    struct SRow
    {
        const char* mWhat;
        SPointerState mState;
        unsigned long mBits;
    };
    for (const SRow& row :
         {SRow{"nothing", {}, 4}, SRow{"primary", {.mPrimaryButton = true}, 4},
          SRow{"secondary", {.mSecondaryButton = true}, 20}, SRow{"shift", {.mShift = true}, 5},
          SRow{"command", {.mCommand = true}, 6}, SRow{"option", {.mOption = true}, 4},
          SRow{"control", {.mControl = true}, 20}, SRow{"all", {true, true, true, true, true, true}, 23}})
    {
        SCOPED_TRACE(row.mWhat);
        EXPECT_EQ(ModifierBits(row.mState), row.mBits);
    }
}
} // namespace
