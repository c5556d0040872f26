#include "Tests/macho/TestBundles.h"
#include "Tests/macho/subjects/RuntimeSubject.h"
#include "Tools/macho_loader/CByteReader.h"
#include "Tools/macho_loader/CMachOLoader.h"
#include "Tools/macho_loader/CrashTrace.h"
#include "Tools/macho_loader/UnwindInfo.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace
{
class CRecordingHost : public IRuntimeHost
{
public:
    int Notify(long inIndex, float inValue, double inWideValue) override
    {
        mIndex = inIndex;
        mValue = inValue;
        mWideValue = inWideValue;
        return 7;
    }
    long long Position(bool* outPlaying) override
    {
        *outPlaying = true;
        return 123'456'789'012'345LL;
    }
    void Text(const char* inText) override { mText = inText; }

    long mIndex = 0;
    float mValue = 0.0F;
    double mWideValue = 0.0;
    std::string mText;
};

class CThrowingHost final : public CRecordingHost
{
public:
    int Notify(long, float, double) override { throw std::runtime_error("from the host"); }
    long long Position(bool*) override { throw 5; }
};

const std::string kSubjectFile = ExecutableIn(TestBundle("runtime_subject.bundle"));

class CrossBuiltRuntime : public testing::Test
{
protected:
    static void SetUpTestSuite() { InstallCrashTrace(); }

    CrossBuiltRuntime() { LoadSubject(); }

    void LoadSubject()
    {
        mImage = &mLoader.Load(kSubjectFile);
        mSubject.reset(ImportFrom<decltype(MakeRuntimeSubject)>(*mImage, "MakeRuntimeSubject")(&mHost));
    }
    void UnloadSubject()
    {
        mSubject.reset();
        mLoader.Unload(*mImage);
    }
    std::string Formatted(double inValue, float inSmallValue, long inWhole)
    {
        char text[512] = {};
        mSubject->FormatText(inValue, inSmallValue, inWhole, text, sizeof(text));
        return text;
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

    CRecordingHost mHost;
    CMachOLoader mLoader{LibraryTable{}};
    CMachOImage* mImage = nullptr;
    std::unique_ptr<IRuntimeSubject, SReleaseSubject> mSubject;
};

TEST_F(CrossBuiltRuntime, CallsPassArgumentsAndResultsOfEveryClass)
{
    EXPECT_EQ(mSubject->Sum(1, 1L << 20, 2.5F, 3.5, 1LL << 21, -7, 8, 9, 10),
              1 + (1 << 20) + 5 + (1 << 21) + 20);
    const SRuntimeResult result = mSubject->Return(2.25, -99);
    EXPECT_EQ(result.values[0], 2.25);
    EXPECT_EQ(result.values[1], 4.5);
    EXPECT_NEAR(result.values[2], std::sin(2.25), 1e-15);
    EXPECT_EQ(result.values[3], 1.5);
    EXPECT_EQ(result.tag, -99);

    std::array<std::vector<float>, 2> inputs = {std::vector<float>(256, 1.0F),
                                                std::vector<float>(256, -1.0F)};
    std::array<std::vector<float>, 2> outputs = {std::vector<float>(256), std::vector<float>(256)};
    float* in[] = {inputs[0].data(), inputs[1].data()};
    float* out[] = {outputs[0].data(), outputs[1].data()};
    mSubject->Process(in, out, 256);
    EXPECT_EQ(outputs[0], std::vector<float>(256, 0.5F));
    EXPECT_EQ(outputs[1], std::vector<float>(256, -0.5F));
}

TEST_F(CrossBuiltRuntime, TheImageCallsTheHostsObjects)
{
    CRecordingHost host;
    EXPECT_EQ(mSubject->CallHost(&host), 7);
    EXPECT_EQ(host.mIndex, -5'000'000'000L);
    EXPECT_EQ(host.mValue, 0.25F);
    EXPECT_EQ(host.mWideValue, 1e-3);
    EXPECT_EQ(host.mText, "123456789012345");
}

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
    EXPECT_ANY_THROW(mSubject->Process(nullptr, nullptr, -1));
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
         ReadUnwindInfo(file.Content(text).subspan(section->address - text.address, section->size)))
    {
        modes.insert(entry.encoding & kUnwindModeMask);
        if ((entry.encoding & kUnwindModeMask) == kUnwindFrameless)
            framelessCounts.insert((entry.encoding >> 10) & 7);
    }
    EXPECT_EQ(modes, (std::set<std::uint32_t>{kUnwindFrameRbp, kUnwindFrameless, kUnwindFramelessLarge,
                                              kUnwindDwarf}));
    EXPECT_EQ(framelessCounts, (std::set<std::uint32_t>{1, 2, 3, 4, 5, 6}));
}

TEST_F(CrossBuiltRuntime, TheCppLibraryFormatsAndParses)
{
    EXPECT_EQ(Formatted(1234.567, 0.1F, -9'000'000'000L),
              "1234.57|0.1|-9000000000|ff|true|25|0.125|1235|00042|1234.567|-9000000000|MIXED "
              "CASE|a2b1|-9000000000|53");
}

TEST_F(CrossBuiltRuntime, EachThreadHasItsOwnVariablesAndDestroysThem)
{
    EXPECT_EQ(mSubject->NextOnThisThread(), 1);
    EXPECT_EQ(mSubject->NextOnThisThread(), 2);
    int onOtherThread = 0;
    CRecordingHost host;
    std::thread(
        [&]
        {
            onOtherThread = mSubject->NextOnThisThread();
            mSubject->TellAtThreadEnd(&host);
        })
        .join();
    EXPECT_EQ(onOtherThread, 1);
    EXPECT_EQ(host.mText, "thread ended");
    EXPECT_EQ(mSubject->NextOnThisThread(), 3);
}

TEST_F(CrossBuiltRuntime, MutexesExcludeAndAnswerInTheSystemsNumbers)
{
    constexpr int kTimes = 20'000;
    constexpr int kThreads = 4;
    long counter = 0;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back([&] { mSubject->AddUnderStaticMutex(&counter, kTimes); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter, long{kThreads} * kTimes);
    EXPECT_EQ(mSubject->LockTwice(), 0);
    constexpr int kDeadlockOnDarwin = 11;
    EXPECT_EQ(mSubject->LockAgainWithErrorCheck(), kDeadlockOnDarwin);
}

TEST_F(CrossBuiltRuntime, AThreadOfTheImageHandsAValueOver) { EXPECT_EQ(mSubject->AskWorker(21), 42); }

TEST_F(CrossBuiltRuntime, TheImageFindsItsOwnPath)
{
    char text[4096] = {};
    ASSERT_TRUE(mSubject->DescribeItself(text, sizeof(text)));
    EXPECT_EQ(text, kSubjectFile + " MakeRuntimeSubject");
}

TEST_F(CrossBuiltRuntime, GlobalsEndWithTheImageAndStartAfreshWithTheNext)
{
    EXPECT_EQ(mSubject->NextOnThisThread(), 1);
    UnloadSubject();
    EXPECT_EQ(mHost.mText, "image unloaded");
    EXPECT_FALSE(mLoader.IsLoaded(kSubjectFile));
    LoadSubject();
    EXPECT_EQ(mSubject->NextOnThisThread(), 1);
    EXPECT_EQ(CountWrongExceptions(), 0);
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

TEST(Loader, AFunctionIsOnlyFoundInTheLibraryThatTheFileNames)
{
    static int somewhere = 0;
    LibraryTable libraries;
    for (const char* const name :
         {"CFStringCreateWithCString", "CFURLCreateWithFileSystemPath", "CFBundleCreate",
          "CFBundleLoadExecutable", "CFBundleUnloadExecutable", "CFBundleGetFunctionPointerForName",
          "CFRelease", "GetCurrentButtonState", "GetCurrentKeyModifiers", "objc_autoreleasePoolPush",
          "objc_autoreleasePoolPop"})
        libraries["/usr/lib/libobjc.A.dylib"][name] = &somewhere;
    CMachOLoader loader(libraries);
    EXPECT_THROW((void)loader.Load(ExecutableIn(TestBundle("platform_subject.bundle"))), CMachOError);
}
} // namespace
