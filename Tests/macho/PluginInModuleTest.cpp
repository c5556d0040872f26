#include "Tests/integration/HostedModule.h"
#include "Tests/macho/MacModule.h"
#include "Tools/macho_loader/CrashTrace.h"
#include "Tools/macho_loader/doubles/CMacSystem.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace
{
/** A product with a plug-in of the tests' own, in a host. */
class CModuleWith
{
public:
    explicit CModuleWith(const std::string& inPlugin)
        : mCopy(inPlugin), mHosted(mLog, StartMacModule(mSystem, mCopy.Path(), mLog))
    {
        InstallCrashTrace();
    }

    CMacModuleCopy mCopy;
    CMacSystem mSystem;
    CHostLog mLog;
    CHostedModule mHosted;
};

TEST(MacModuleWithAPlugin, OneThatRefusesItselfIsNoEffectAndIsUnloaded)
{
    for (const char* const plugin :
         {"faulty_ReturnNull.vst", "faulty_WrongMagic.vst", "scripted_plugin_throwing.vst"})
    {
        SCOPED_TRACE(plugin);
        const CMacModuleCopy copy(plugin);
        CMacSystem system;
        CHostLog log;
        const auto module = StartMacModule(system, copy.Path(), log);
        ASSERT_FALSE(module);
        EXPECT_NE(module.Problem().mSentence.find("-20004"), std::string::npos) << module.Problem().mSentence;
        EXPECT_EQ(log.Count("AddEffect"), 0U);
        EXPECT_EQ(log.LiveObjects(), 0);
        EXPECT_EQ(system.Objects().Count(), 0U) << "its bundle";
        EXPECT_TRUE(system.Pools().empty());
    }
}

TEST(MacModuleWithAPlugin, AnExceptionThrownWhileRenderingEndsAtTheBorderAndIsHeardAsSilence)
{
    CModuleWith module("faulty_ThrowInRender.vst");
    const Channels rendered = module.mHosted.Render(); // block after block of it
    ASSERT_EQ(rendered.size(), 2U);
    EXPECT_EQ(LoudnessOf(rendered), 0.0);
}

TEST(MacModuleWithAPlugin, AGestureTellsTheButtonsAndKeysThatAreHeld)
{
    struct SRow
    {
        std::uint32_t mButtons;
        std::uint32_t mKeys; // as the system numbers them
        const char* mTold;
    };
    const SRow rows[] = {
        {1, 0, "0x4"},
        {1, 0x0200, "0x5"},          // shift
        {1, 0x0100, "0x6"},          // command
        {1, 0x0800, "0x4"},          // option
        {1, 0x1000, "0x14"},         // control
        {3, 0x0100 | 0x0200, "0x17"} // with the secondary button
    };
    CModuleWith module("faulty_DragInIdle.vst");
    CInstance& instance = module.mHosted.Instance();
    (void)Expect(instance.OpenGUI()); // throws on a problem
    ASSERT_EQ(instance.GUI()->SetViewContainer(&instance.Host().ViewContainer()), kAAX_Success);
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(testing::Message() << row.mButtons << " " << row.mKeys);
        module.mSystem.mButtons = row.mButtons;
        module.mSystem.mModifiers = row.mKeys;
        module.mLog.Clear();
        ASSERT_EQ(instance.GUI()->TimerWakeup(), kAAX_Success);
        const std::string arguments = "(\"00000\", " + std::string(row.mTold) + ")";
        EXPECT_EQ(module.mLog.Calls(),
                  (std::vector<std::string>{
                      "HandleParameterMouseDown" + arguments, "PostTouchRequest(\"00000\")",
                      "PostSetValueRequest(\"00000\", 0.25)", "PostReleaseRequest(\"00000\")",
                      "HandleParameterMouseDrag" + arguments, "HandleParameterMouseUp" + arguments}));
    }
    EXPECT_EQ(instance.GUI()->SetViewContainer(nullptr), kAAX_Success);
}
} // namespace
