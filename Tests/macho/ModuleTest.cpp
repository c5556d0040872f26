#include "Tests/integration/HostedModule.h"
#include "Tests/macho/MacModule.h"
#include "Tools/aaxhost/player/InstanceState.h"
#include "Tools/macho_loader/CrashTrace.h"
#include "Tools/macho_loader/doubles/CMacSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace
{
/** The same product as built for both systems. */
class CBothModules
{
public:
    explicit CBothModules(const std::string& inName)
        : mMac(mMacLog, StartMacModule(mSystem, ModuleBundle(AAXADAPTER_MACOS_BUILD, inName), mMacLog)),
          mLinux(mLinuxLog, CModule::Open(ModuleBundle(AAXADAPTER_LINUX_BUILD, inName), mLinuxLog))
    {
    }

    CMacSystem mSystem;
    CHostLog mMacLog;
    CHostLog mLinuxLog;
    CHostedModule mMac;
    CHostedModule mLinux;
};

class MacModule : public testing::TestWithParam<const char*>
{
protected:
    static void SetUpTestSuite() { InstallCrashTrace(); }
};

TEST_P(MacModule, DescribesItselfAsTheLinuxBuildDoes)
{
    CBothModules modules(GetParam());
    EXPECT_FALSE(modules.mMac.Describing().empty());
    EXPECT_EQ(modules.mMac.Describing(), modules.mLinux.Describing());
}

TEST_P(MacModule, SoundsLikeTheLinuxBuildBitForBit)
{
    CBothModules modules(GetParam());
    for (CHostedModule* const module : {&modules.mMac, &modules.mLinux})
        EXPECT_EQ(module->Instance().SetParameter("00000", 0.3), kAAX_Success);
    const Channels mac = modules.mMac.Render();
    const Channels linux = modules.mLinux.Render();
    EXPECT_GT(LoudnessOf(mac), 1.0) << "silence proves nothing";
    ASSERT_EQ(mac.size(), linux.size());
    for (std::size_t channel = 0; channel < mac.size(); ++channel)
    {
        ASSERT_EQ(mac[channel].size(), linux[channel].size());
        const auto [here, there] = std::ranges::mismatch(mac[channel], linux[channel]);
        EXPECT_EQ(here, mac[channel].end())
            << "channel " << channel << ", frame " << here - mac[channel].begin() << ": " << *here << " and "
            << *there;
    }
}

TEST_P(MacModule, GivesAndTakesTheStateOfTheLinuxBuild)
{
    CBothModules modules(GetParam());
    const std::string untouched = modules.mMac.State();
    EXPECT_EQ(modules.mLinux.Instance().SetParameter("00000", 0.3), kAAX_Success);
    const SInstanceState saved = Expect(TakeState(modules.mLinux.Module(), modules.mLinux.Instance()));
    (void)Expect(GiveState(modules.mMac.Module(), modules.mMac.Instance(), saved)); // throws on a problem
    EXPECT_NE(modules.mMac.State(), untouched);
    EXPECT_EQ(modules.mMac.State(), modules.mLinux.State());
    EXPECT_TRUE(modules.mMac.Render() == modules.mLinux.Render());
}

TEST_P(MacModule, TwoInstancesShareNothing)
{
    CMacSystem system;
    CHostLog log;
    CHostedModule module(log, StartMacModule(system, ModuleBundle(AAXADAPTER_MACOS_BUILD, GetParam()), log));
    const auto other = Expect(CInstance::Create(module.Module(), kHostedRate));
    const std::string untouched = StateOf(module.Module(), *other);
    const Channels alone = RenderAll(*other, MakeHostedJob());

    const auto second = Expect(CInstance::Create(module.Module(), kHostedRate));
    EXPECT_EQ(module.Instance().SetParameter("00000", 0.3), kAAX_Success);
    EXPECT_NE(module.State(), untouched);
    EXPECT_EQ(StateOf(module.Module(), *second), untouched);
    EXPECT_FALSE(module.Render() == alone);
    EXPECT_TRUE(RenderAll(*second, MakeHostedJob()) == alone);
}

TEST_P(MacModule, FindsItsPluginBesideItselfAndLeavesNothingOpen)
{
    const std::string bundle = ModuleBundle(AAXADAPTER_MACOS_BUILD, GetParam());
    CMacSystem system;
    CHostLog log;
    {
        CHostedModule module(log, StartMacModule(system, bundle, log));
        const std::vector<std::string> calls = system.Calls().Take();
        EXPECT_EQ(std::ranges::count(calls, "CFStringCreateWithCString " + bundle +
                                                "/Contents/Resources/source.vst -> string1"),
                  1);
        (void)Expect(module.Instance().OpenGUI()); // throws on a problem
        EXPECT_TRUE(system.Pools().empty());
    }
    EXPECT_EQ(log.LiveObjects(), 0);
    EXPECT_TRUE(system.Pools().empty());
    EXPECT_EQ(system.Objects().Count(), 1U) << "the bundle that stays loaded, and nothing else";
}

INSTANTIATE_TEST_SUITE_P(Products, MacModule,
                         testing::Values("SynthAdapter", "DelayAdapter", "OldEntryAdapter"),
                         [](const auto& inInfo) { return std::string(inInfo.param); });

TEST(MacModules, TwoInOneProcessAreAndSoundAsEachDoesAlone)
{
    InstallCrashTrace();
    const std::string bundles[] = {ModuleBundle(AAXADAPTER_MACOS_BUILD, "SynthAdapter"),
                                   ModuleBundle(AAXADAPTER_MACOS_BUILD, "DelayAdapter")};
    STwoProducts alone;
    for (const int i : {0, 1})
    {
        CMacSystem system;
        CHostLog log;
        CHostedModule module(log, StartMacModule(system, bundles[i], log));
        alone.mDescribing[i] = module.Describing();
        alone.mSound[i] = module.Render();
    }
    EXPECT_NE(alone.mDescribing[0], alone.mDescribing[1]);
    EXPECT_FALSE(alone.mSound[0] == alone.mSound[1]);

    CMacSystem system;
    CHostLog logs[2];
    CHostedModule first(logs[0], StartMacModule(system, bundles[0], logs[0]));
    CHostedModule second(logs[1], StartMacModule(system, bundles[1], logs[1]));
    const STwoProducts together = UseTogether(first, second);
    for (const int i : {0, 1})
    {
        EXPECT_EQ(together.mDescribing[i], alone.mDescribing[i]);
        EXPECT_TRUE(together.mSound[i] == alone.mSound[i]) << bundles[i];
    }
}
} // namespace
