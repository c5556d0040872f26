#include "Tests/integration/HostedModule.h"
#include "Tests/macho/MacModule.h"
#include "Tools/macho_loader/CrashTrace.h"
#include "Tools/macho_loader/doubles/CMacSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace
{
/** All that a plug-in which mirrors its host hears and says, and the host with it. */
struct SSeen
{
    std::vector<float> mSound;
    std::vector<std::array<std::uint32_t, 3>> mPosted; // block, frame, second byte
    std::vector<std::string> mHostCalls;
    std::string mState;
    bool operator==(const SSeen&) const = default;
};

SSeen Use(CHostedModule& ioModule, CHostLog& ioLog)
{
    CInstance& instance = ioModule.Instance();
    const auto call = instance.MakeRenderCall();
    CHostMidiNode& input = *call->FindNode(AAX_eMIDINodeType_LocalInput);
    CHostMidiNode& output = *call->FindNode(AAX_eMIDINodeType_LocalOutput);
    STransportState& transport = instance.Host().Transport().State();
    transport.mPlaying = transport.mLooping = true;
    transport.mLoopEndTick = 960000 * 7;
    (void)Expect(instance.OpenGUI()); // throws on a problem
    (void)instance.GUI()->SetViewContainer(&instance.Host().ViewContainer());
    ioLog.Clear();
    SSeen seen;
    for (std::uint32_t block = 0; block < 8; ++block)
    {
        transport.mTempo = 100.0 + block;
        transport.mMeterNumerator = block < 4 ? 3 : 7;
        call->mFrames = block == 5 ? 1500 : 200; // one in parts
        const std::vector<std::vector<std::uint8_t>> packets = {
            {0x90, 60, 100}, {0xF0, 1, 2, static_cast<std::uint8_t>(block)}, {4, 5, 0xF7}};
        input.Clear();
        for (std::uint32_t i = 0; i < packets.size(); ++i)
            input.Add(10 * i, packets[i]);
        output.ForgetPosted();
        instance.Render(*call);
        const auto frames = call->Output(0).first(static_cast<std::size_t>(call->mFrames));
        seen.mSound.insert(seen.mSound.end(), frames.begin(), frames.end());
        for (const AAX_CMidiPacket& packet : output.Posted())
            seen.mPosted.push_back({block, packet.mTimestamp, packet.mData[1]});
        transport.mSamplePosition += call->mFrames;
        call->mClock += call->mFrames;
        (void)instance.Parameters().TimerWakeup();
        (void)instance.GUI()->TimerWakeup();
    }
    seen.mHostCalls = ioLog.Calls();
    seen.mState = ioModule.State();
    (void)instance.GUI()->SetViewContainer(nullptr);
    instance.CloseGUI();
    return seen;
}

TEST(MacFeatures, AllOfThemDoWhatTheyDoOnLinux)
{
    InstallCrashTrace();
    CMacSystem system;
    CHostLog macLog;
    CHostLog linuxLog;
    CHostedModule mac(
        macLog, StartMacModule(system, ModuleBundle(AAXADAPTER_MACOS_BUILD, "FeaturedAdapter"), macLog));
    CHostedModule linux(linuxLog,
                        CModule::Open(ModuleBundle(AAXADAPTER_LINUX_BUILD, "FeaturedAdapter"), linuxLog));
    EXPECT_EQ(mac.Describing(), linux.Describing());
    const SSeen there = Use(linux, linuxLog);
    const SSeen here = Use(mac, macLog);
    EXPECT_EQ(here.mSound, there.mSound);
    EXPECT_EQ(here.mPosted, there.mPosted);
    EXPECT_EQ(here.mHostCalls, there.mHostCalls);
    EXPECT_TRUE(here == there);
    // What they both do is the other tests'; but that there is something of everything.
    EXPECT_GT(LoudnessOf({here.mSound}), 1.0);
    EXPECT_EQ(here.mPosted.size(), 9U);
    for (const char* call : {"SetSignalLatency(96)", "SetViewSize(300 by 200)"})
        EXPECT_NE(std::ranges::find(here.mHostCalls, call), here.mHostCalls.end()) << call;
}
} // namespace
