#include "Tests/macho/TestBundles.h"
#include "Tests/macho/subjects/RuntimeSubject.h"
#include "Tools/macho_loader/CByteReader.h"
#include "Tools/macho_loader/CMachOLoader.h"
#include "Tools/macho_loader/CrashTrace.h"
#include "Tools/macho_loader/UnwindInfo.h"

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace
{
class CThrowingHost final : public IRuntimeHost
{
public:
    void Throw() override { throw std::runtime_error("from the host"); }
    int ThrowFive() override { throw 5; }
};

const std::string kSubjectFile = ExecutableIn(TestBundle("runtime_subject.bundle"));

class CrossBuiltRuntime : public testing::Test
{
protected:
    static void SetUpTestSuite() { InstallCrashTrace(); }

    CrossBuiltRuntime()
    {
        const CMachOImage& image = mLoader.Load(kSubjectFile);
        mSubject.reset(ImportFrom<decltype(MakeRuntimeSubject)>(image, "MakeRuntimeSubject")());
    }
    /** How many of the exceptions did not arrive as they were, or left something behind. */
    int CountWrongExceptions()
    {
        int wrong = 0;
        for (int thrown = 0; thrown < kThrowCount; ++thrown)
        {
            int live = -1;
            wrong += mSubject->ThrowAndCatch(thrown, &live) != thrown || live != 0 ? 1 : 0;
        }
        return wrong;
    }

    CMachOLoader mLoader{LibraryTable{}};
    std::unique_ptr<IRuntimeSubject, SReleaseSubject> mSubject;
};

TEST_F(CrossBuiltRuntime, ExceptionsArriveAsWhatTheyAreAndDestroyWhatIsBetween)
{
    for (int thrown = 0; thrown < kThrowCount; ++thrown)
    {
        SCOPED_TRACE(thrown);
        int live = -1;
        EXPECT_EQ(mSubject->ThrowAndCatch(thrown, &live), thrown);
        EXPECT_EQ(live, 0);
    }
}

TEST_F(CrossBuiltRuntime, ExceptionsOnSeveralThreadsDoNotMeet)
{
    constexpr int kRounds = 200;
    std::array<int, 4> wrong{};
    std::vector<std::thread> threads;
    threads.reserve(wrong.size());
    for (int& count : wrong)
        threads.emplace_back(
            [&]
            {
                for (int round = 0; round < kRounds; ++round)
                    count += CountWrongExceptions();
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, (std::array<int, 4>{}));
}

TEST_F(CrossBuiltRuntime, ExceptionsCrossTheBorderInBothDirections)
{
    CThrowingHost host;
    EXPECT_TRUE(mSubject->CatchFromHost(&host));
    int caught = 0;
    try
    {
        (void)mSubject->CallHost(&host); // throws
    }
    catch (int number)
    {
        caught = number;
    }
    EXPECT_EQ(caught, 5);
    EXPECT_ANY_THROW(mSubject->Throw());
}

TEST_F(CrossBuiltRuntime, RegistersSurviveAThrowThroughEveryFormOfFrame)
{
    EXPECT_EQ(mSubject->CountLostRegisters(), 0);

    // The forms are the compiler's choice: without all of them the line above says less than it seems to.
    const CMachOFile file(kSubjectFile);
    const SMachOSection* const section = file.FindSection("__unwind_info");
    ASSERT_NE(section, nullptr);
    const SMachOSegment& text = file.Segments().front();
    std::set<std::uint32_t> modes;
    std::set<std::uint32_t> framelessCounts;
    for (const SUnwindEntry& entry :
         ReadUnwindInfo(file.Content(text).subspan(section->mAddress - text.mAddress, section->mSize)))
    {
        modes.insert(entry.mEncoding & kUnwindModeMask);
        if ((entry.mEncoding & kUnwindModeMask) == kUnwindFrameless)
            framelessCounts.insert((entry.mEncoding >> 10) & 7);
    }
    EXPECT_EQ(modes, (std::set<std::uint32_t>{kUnwindFrameRbp, kUnwindFrameless, kUnwindFramelessLarge,
                                              kUnwindDwarf}));
    EXPECT_EQ(framelessCounts, (std::set<std::uint32_t>{1, 2, 3, 4, 5, 6}));
}

TEST(Loader, AnImportThatNobodyOffersIsRefusedByName)
{
    CMachOLoader loader{LibraryTable{}};
    try
    {
        (void)loader.Load(ExecutableIn(TestBundle("platform_subject.bundle"))); // throws
        ADD_FAILURE() << "loaded without its frameworks";
    }
    catch (const CMachOError& error)
    {
        const std::string message = error.what();
        EXPECT_NE(message.find("_CFRelease of /System/Library/Frameworks/CoreFoundation.framework"),
                  std::string::npos)
            << message;
        EXPECT_EQ(message.find("libSystem"), std::string::npos) << message;
    }
}
} // namespace
