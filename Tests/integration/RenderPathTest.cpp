#include "Tests/doubles/faulty/FaultyPlugin.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/check/CallWatch.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>
#include <utility>

#include <malloc.h>

namespace
{
namespace fs = std::filesystem;
using enum EForbiddenKind;

/** A plug-in in a module, whose render calls are watched. */
struct SWatchedRig
{
    explicit SWatchedRig(const fs::path& inPlugin, const fs::path& inModule = kPlainModule)
        : mBundle(inModule, inPlugin)
    {
    }

    /** Each block gets this many notes on and off, where MIDI is taken. */
    SCallWatch Render(int inPackets, int inBlocks = 1)
    {
        for (int i = 0; i < inPackets; ++i)
            mRig.Send(static_cast<std::uint32_t>(i % 64), i % 2 == 0 ? 0x90 : 0x80,
                      static_cast<std::uint8_t>(40 + i / 2 % 40), 100);
        mRig.Call().mFrames = 64;
        SCallWatch watch;
        WatchCalls(mContext.ModuleFile(), watch,
                   [&]
                   {
                       for (int i = 0; i < inBlocks; ++i)
                           mRig.Instance().Render(mRig.Call());
                   });
        if (mRig.Midi() != nullptr)
            mRig.Midi()->Clear();
        return watch;
    }

    CModuleBundle mBundle;
    CCheckContext mContext{mBundle.Path().string(), 5};
    CRig mRig{mContext};
};

TEST(RenderPath, NothingIsAllocatedFreedLockedOrAskedOfTheSystem)
{
    const std::string obstacle = CallWatchObstacle();
    // The module knows the synthesizer's ports and MIDI; the delay shows the way without MIDI.
    const fs::path talkative = Faulty("Talkative");
    for (const auto& [plugin, module] :
         {std::pair(kSynthPlugin, kPlainModule), std::pair(kDelayPlugin, kPlainModule),
          std::pair(kSynthPlugin, kAllFeaturesModule), std::pair(talkative, kAllFeaturesModule)})
    {
        SCOPED_TRACE(fmt::format("{} in {}", plugin.string(), module.string()));
        SWatchedRig rig(plugin, module);
        for (const int packets : {0, 1, 100, 99, 0})
            EXPECT_EQ(rig.Render(packets), SCallWatch{}) << packets;
        for (const double bypass : {0.0, 1.0, 0.0})
        {
            (void)rig.mRig.Instance().UpdateParameter("MasterBypassID", bypass); // not every product knows it
            EXPECT_EQ(rig.Render(100, 1000), SCallWatch{}) << "bypass " << bypass;
        }
        const bool hasGrown = rig.Render(1000).mModule.Of(kAllocation) > 0;
        EXPECT_TRUE(hasGrown == (rig.mRig.Midi() != nullptr) || !obstacle.empty());
        EXPECT_EQ(rig.Render(1000), SCallWatch{}) << "as many packets as the largest block so far";
    }
    if (!obstacle.empty())
        GTEST_SKIP() << obstacle; // what can be watched here has been
}

TEST(CallWatch, TellsTheModulesCallsFromThePluginsAndTheHosts)
{
    if (const std::string obstacle = CallWatchObstacle(); !obstacle.empty())
        GTEST_SKIP() << obstacle;
    const auto watch = [](const fs::path& plugin, int packets)
    {
        SWatchedRig rig(plugin);
        rig.mRig.Render(64);
        rig.mContext.Log().RecordRenderCalls(true); // has the host allocate and lock during the call
        return rig.Render(packets);
    };
    const SCallWatch quiet = watch(kSynthPlugin, 1);
    EXPECT_EQ(quiet, (SCallWatch{quiet.mHost, {}, {}})) << "the host's calls count as another's";
    EXPECT_GT(quiet.mHost.Of(kAllocation), 0);
    EXPECT_GT(quiet.mHost.Of(kLock), 0);

    const SCallWatch growing = watch(kSynthPlugin, 5000); // more than ever: the module makes room for them
    EXPECT_GT(growing.mModule.Of(kAllocation), 0);
    EXPECT_GT(growing.mModule.Of(kRelease), 0);
    EXPECT_EQ(growing.mPlugin, SWatchedCalls{}) << growing;

    const SCallWatch blocking = watch(Faulty("Blocking"), 0);
    EXPECT_EQ(blocking.mPlugin.Of(kLock), 1);
    EXPECT_EQ(blocking.mPlugin.mSystemCallCount, 1U);
    EXPECT_EQ(blocking.mModule, SWatchedCalls{}) << blocking;
}

TEST(CallWatch, CountsEveryWayToAllocate)
{
    if (const std::string obstacle = CallWatchObstacle(); !obstacle.empty())
        GTEST_SKIP() << obstacle;
    using Allocate = void* (*)();
    for (const auto& [name, allocate] :
         std::initializer_list<std::pair<const char*, Allocate>>{
             {"malloc", [] { return std::malloc(8); }},
             {"calloc", [] { return std::calloc(1, 8); }},
             {"realloc", [] { return std::realloc(nullptr, 8); }},
             {"aligned_alloc", [] { return std::aligned_alloc(8, 8); }},
             {"memalign", [] { return memalign(8, 8); }},
             {"valloc", [] { return valloc(8); }}})
    {
        void* volatile memory = nullptr; // or the compiler leaves both calls out
        SCallWatch watch;
        WatchCalls({}, watch, [&, allocate = allocate] { memory = allocate(); });
        std::free(memory);
        EXPECT_EQ(watch.mHost.Of(kAllocation), 1) << name;
    }
}
} // namespace
