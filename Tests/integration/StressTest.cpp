#include "Tests/integration/CHostRoutine.h"
#include "Tools/aaxhost/player/CModule.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace
{
using Clock = std::chrono::steady_clock;

/** How long it goes on with each of the two modules: AAXADAPTER_STRESS_SECONDS for both, else a moment. */
std::chrono::seconds Duration()
{
    const char* const seconds = std::getenv("AAXADAPTER_STRESS_SECONDS");
    return std::chrono::seconds(seconds != nullptr ? std::max(1, std::atoi(seconds) / 2) : 2);
}

/** An instance and the thread that renders it as fast as it can. */
class CStressed
{
public:
    explicit CStressed(CModule& inModule)
    {
        auto instance = CInstance::Create(inModule, 48000.0);
        if (!instance)
            throw std::runtime_error(instance.Problem().mSentence);
        mInstance = std::move(*instance);
        mRoutine = std::make_unique<CHostRoutine>(*mInstance);
        mRenderer = std::thread(
            [this]
            {
                for (std::uint32_t block = 0; !mStops.load(); ++block)
                {
                    mRoutine->Render(static_cast<std::int32_t>(1 + block % 512), block % 7);
                    mWrong += mRoutine->Call().Output(1)[0] == CHostRoutine::kInputLevel ? 0 : 1;
                    ++mBlocks;
                }
            });
    }
    CStressed(const CStressed&) = delete;
    CStressed& operator=(const CStressed&) = delete;
    ~CStressed() { Stop(); }

    void Stop()
    {
        mStops.store(true);
        if (mRenderer.joinable())
            mRenderer.join();
    }
    CHostRoutine& Routine() { return *mRoutine; }
    long Blocks() const { return mBlocks.load(); }
    long Wrong() const { return mWrong.load(); }

private:
    std::unique_ptr<CInstance> mInstance;
    std::unique_ptr<CHostRoutine> mRoutine;
    std::atomic<bool> mStops = false;
    std::atomic<long> mBlocks = 0;
    std::atomic<long> mWrong = 0;
    std::thread mRenderer;
};

/** By the module's file. */
class Stress : public testing::TestWithParam<const char*>
{
};

TEST_P(Stress, EightInstancesRenderWhileEverythingElseHappensToThem)
{
    unsetenv("DISPLAY"); // a gesture asks the server for the keys that are held, each time
    CHostLog log;
    auto module = CModule::Open(GetParam(), log);
    ASSERT_TRUE(module) << module.Problem().mSentence;
    std::vector<std::unique_ptr<CStressed>> stressed;
    for (int i = 0; i < 8; ++i)
        stressed.push_back(std::make_unique<CStressed>(**module));

    std::atomic<bool> stops = false;
    std::atomic<long> made = 0;
    std::thread maker(
        [&]
        {
            for (; !stops.load(); ++made)
            {
                auto instance = CInstance::Create(**module, 44100.0);
                if (!instance)
                    break;
                CHostRoutine routine(**instance);
                routine.Everything();
            }
        });

    const auto end = Clock::now() + Duration();
    int rounds = 0;
    for (; Clock::now() < end || made.load() < 3 || rounds < 8; ++rounds)
    {
        CHostRoutine& routine = stressed[static_cast<std::size_t>(rounds) % stressed.size()]->Routine();
        routine.MoveParameters(rounds % 100 / 100.0);
        routine.Save();
        routine.ShowEditor();
        routine.Load();
        EXPECT_EQ(routine.Failures(), std::set<AAX_Result>());
        log.Clear(); // does not grow with the run
    }
    stops.store(true);
    maker.join();
    for (const auto& one : stressed)
    {
        one->Stop();
        EXPECT_GT(one->Blocks(), 0);
        EXPECT_EQ(one->Wrong(), 0);
    }
    stressed.clear();
    EXPECT_EQ((*module)->LiveObjects(), 0);
    std::printf("%d rounds, %ld instances made\n", rounds, made.load());
}

INSTANTIATE_TEST_SUITE_P(Each, Stress, testing::Values(STRESS_MODULE, STRESS_MODULE_ALL));
} // namespace
