#include "Tests/doubles/CallGuard.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tools/aaxhost/lib/CInstance.h"
#include "Tools/aaxhost/lib/CModule.h"

#include <gtest/gtest.h>

#include <array>

#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
/** An instance of a module around one of the examples, which neither allocate nor lock while they render. */
class RenderGuard : public testing::TestWithParam<bool>
{
protected:
    void SetUp() override
    {
        if (!CCallGuard::IsWatching())
            GTEST_SKIP() << "the sanitizer has replaced what is watched here";
        auto module = CModule::Open(mBundle.Path().string(), mLog);
        ASSERT_TRUE(module) << module.Problem().mSentence;
        mModule = std::move(*module);
        auto instance = CInstance::Create(*mModule, 48000.0);
        ASSERT_TRUE(instance) << instance.Problem().mSentence;
        mInstance = std::move(*instance);
        mCall = mInstance->MakeRenderCall();
        mCall->mFrames = 64;
        mInstance->Host().Transport().State().mPlaying = true;
    }
    /** The next block gets this many notes on and off. */
    void FillNode(std::uint32_t inPackets)
    {
        CHostMidiNode* const node = mCall->FindNode(AAX_eMIDINodeType_LocalInput);
        if (node == nullptr)
            return;
        node->Clear();
        for (std::uint32_t i = 0; i < inPackets; ++i)
            node->Add(i % 64, std::array<std::uint8_t, 3>{static_cast<std::uint8_t>(i % 2 == 0 ? 0x90 : 0x80),
                                                          static_cast<std::uint8_t>(40 + i / 2 % 40), 100});
    }

    // The plain module knows the synthesizer's ports and MIDI; the delay shows the way without MIDI.
    const CModuleBundle mBundle{kPlainModule, GetParam() ? kSynthPlugin : kDelayPlugin};
    CHostLog mLog;
    std::unique_ptr<CModule> mModule;
    std::unique_ptr<CInstance> mInstance;
    std::unique_ptr<SRenderCall> mCall;
};

TEST_P(RenderGuard, NothingIsAllocatedFreedOrLocked)
{
    for (const std::uint32_t packets : {0U, 1U, 100U, 99U, 0U})
    {
        SCOPED_TRACE(packets);
        FillNode(packets);
        CCallGuard guard;
        mInstance->Render(*mCall);
        EXPECT_EQ(guard.Stop(), SGuardedCalls{});
    }
    FillNode(1000);
    mInstance->Render(*mCall); // may grow
    FillNode(1000);
    CCallGuard guard;
    mInstance->Render(*mCall);
    EXPECT_EQ(guard.Stop(), SGuardedCalls{}) << "as many packets as the largest block so far";
}

TEST_P(RenderGuard, NoSystemCallIsMade)
{
    FillNode(100);
    mInstance->Render(*mCall); // touches what has to be touched once
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
    {
        // From here on the kernel ends the process at any call but read, write and exit.
        if (prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT) != 0)
            _exit(3);
        for (int i = 0; i < 1000; ++i)
            mInstance->Render(*mCall);
        syscall(SYS_exit, 0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

INSTANTIATE_TEST_SUITE_P(Examples, RenderGuard, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& inInfo)
                         { return inInfo.param ? "Synth" : "Delay"; });

TEST(CallGuard, SeesEachKindOfCall)
{
    if (!CCallGuard::IsWatching())
        GTEST_SKIP() << "the sanitizer has replaced what is watched here";
    CCallGuard guard;
    void* volatile memory = std::malloc(10);
    std::free(memory);
    int* volatile number = new int(1);
    delete number;
    std::mutex mutex;
    mutex.lock();
    mutex.unlock();
    const SGuardedCalls calls = guard.Stop();
    EXPECT_GE(calls.mAllocations, 2);
    EXPECT_GE(calls.mFrees, 2);
    EXPECT_EQ(calls.mLocks, 1);
}
} // namespace
