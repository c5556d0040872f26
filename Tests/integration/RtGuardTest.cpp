#include "Tests/doubles/faulty/FaultyPlugin.h"
#include "Tests/integration/CHostRoutine.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tests/support/FileContents.h"
#include "Tools/aaxhost/player/CModule.h"

#include <gtest/gtest.h>

namespace
{
namespace fs = std::filesystem;

constexpr std::string_view kNothing = "allocations and releases 0, locks 0, blocking calls 0\n";

/** Renders some blocks with a module and closes it. @return what it said meanwhile. */
std::string Render(const fs::path& inModule, const fs::path& inPlugin, std::uint32_t inMostPackets,
                   int inTimes = 1)
{
    testing::internal::CaptureStderr();
    const CModuleBundle bundle(inModule, inPlugin);
    for (int time = 0; time < inTimes; ++time)
    {
        CHostLog log;
        auto module = CModule::Open(bundle.Path().string(), log);
        EXPECT_TRUE(module) << module.Problem().mSentence;
        if (!module)
            break;
        auto instance = CInstance::Create(**module, 48000.0);
        EXPECT_TRUE(instance) << instance.Problem().mSentence;
        if (!instance)
            break;
        CHostRoutine routine(**instance);
        routine.Everything(); // what is called outside the render call does not count
        for (int block = 0; block < 7; ++block)
            routine.Render(64, block == 6 ? inMostPackets : 10);
    }
    return testing::internal::GetCapturedStderr();
}

std::string LineOf(const std::string& inReport, const std::string& inOwner)
{
    const std::string start = "  the " + inOwner + ": ";
    const std::size_t begin = inReport.find(start);
    EXPECT_NE(begin, std::string::npos) << inReport;
    return begin == std::string::npos
               ? inReport
               : inReport.substr(begin + start.size(), inReport.find('\n', begin) + 1 - begin - start.size());
}

TEST(RtGuard, SaysWhoseCallsItSaw)
{
    const std::string quiet = Render(TEST_GUARDED_MODULE, kSynthPlugin, 100);
    EXPECT_EQ(quiet.find("Real-time guard, 10 render calls:\n"), 0U) << quiet;
    EXPECT_EQ(LineOf(quiet, "plug-in"), kNothing);

    // Ten blocks, one of which is so large that it goes in four parts.
    for (const char* plugin : {"Heap", "HeapBoundEarly"})
    {
        const std::string heap = Render(TEST_GUARDED_MODULE, Faulty(plugin), 10);
        EXPECT_EQ(LineOf(heap, "module"), kNothing);
        EXPECT_NE(LineOf(heap, "plug-in").find("(operator new 13, "), std::string::npos) << heap;
        EXPECT_NE(heap.find("releases 26 ("), std::string::npos) << heap;
    }

    const std::string blocking = Render(TEST_GUARDED_MODULE, Faulty("Blocking"), 10);
    EXPECT_EQ(LineOf(blocking, "module"), kNothing);
    EXPECT_NE(blocking.find("locks 13 (pthread_mutex_lock 13)"), std::string::npos) << blocking;
    EXPECT_NE(blocking.find("blocking calls 13 ("), std::string::npos) << blocking;
    EXPECT_NE(blocking.find("nanosleep 13)"), std::string::npos) << blocking;
}

TEST(RtGuard, TheModulesOwnCallsAreTheModules)
{
    // More packets than ever before: it makes room for them, the only time that it allocates.
    const std::string growing = Render(TEST_GUARDED_MODULE, kSynthPlugin, 1000);
    EXPECT_NE(LineOf(growing, "module").find("operator new "), std::string::npos) << growing;
    EXPECT_EQ(LineOf(growing, "plug-in"), kNothing);
}

TEST(RtGuard, ThePluginOutlivesTheModuleThatWatchedIt)
{
    // Its executable stays loaded between the two, and must not call what has been unloaded.
    const std::string twice = Render(TEST_GUARDED_MODULE, Faulty("Heap"), 10, 3);
    EXPECT_NE(LineOf(twice, "plug-in").find("operator new "), std::string::npos) << twice;
}

TEST(RtGuard, AModuleWithoutItHasNothingOfIt)
{
    EXPECT_EQ(Render(kPlainModule, Faulty("Heap"), 10), "");
    const auto contains = [](const fs::path& file, std::string_view text)
    { return Contents(file).find(text) != std::string::npos; };
    for (const char* part : {"Real-time guard", "mprotect", "GuardedRender"})
    {
        SCOPED_TRACE(part);
        EXPECT_TRUE(contains(TEST_GUARDED_MODULE, part));
        EXPECT_FALSE(contains(kPlainModule, part));
    }
}
} // namespace
