#include "Tests/integration/OpenedEditor.h"
#include "Tests/support/ToolRun.h"
#include "Tools/aaxhost/window/CVirtualDisplay.h"
#include "Tools/aaxhost/window/SPicture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <optional>
#include <set>
#include <sstream>
#include <thread>

namespace fs = std::filesystem;

extern "C"
{
    // Of the leak checker; null where the program is built without it.
    [[gnu::weak]] void __lsan_disable();
    [[gnu::weak]] void __lsan_enable();
}

namespace
{
using Lines = std::vector<std::string>;

constexpr unsigned kPrimaryButton = 1;
constexpr unsigned kSecondaryButton = 3;

/** A plug-in with an editor, and where in it one of its knobs is. */
struct SSubject
{
    const char* mName;
    fs::path mPlugin;
    bool mNeedsOptions;
    const char* mParameter;
    int mX;
    int mY;
};

void PrintTo(const SSubject& inSubject, std::ostream* outStream) { *outStream << inSubject.mName; }

const SSubject kSynth{"ExampleSynth", kSynthPlugin, false, "00000", 44, 100};
const SSubject kMVerb{"MVerb", InstalledPlugin("MVerb"), true, "00007", 71, 53};
const SSubject kZamComp{"ZamComp", InstalledPlugin("ZamComp"), true, "00000", 45, 66};

class OnADisplay : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!CVirtualDisplay::IsInstalled())
            GTEST_SKIP() << "Xvfb is not installed";
        ASSERT_EQ(mDisplay.Start(), "");
        mScreen.emplace();
    }

    /** A drag over the subject's knob, upwards in steps, each waited for. */
    void Drag(SOpened& inOpened, const SSubject& inKnob)
    {
        CHostLog& log = inOpened.mLoaded.mLog;
        log.Clear();
        const auto await = [&](const char* inCall, std::size_t inCount)
        {
            const bool came = inOpened.Await([&] { return log.Count(inCall) >= inCount; });
            EXPECT_TRUE(came) << inCall << " " << inCount << " did not come";
            return came;
        };
        EXPECT_TRUE(inOpened.Await([&] { return mScreen->ShowsEditor(inOpened.WindowID()); }));
        mScreen->MoveTo(inKnob.mX, inKnob.mY);
        mScreen->Button(kPrimaryButton, true);
        bool goesOn = await("HandleParameterMouseDown", 1);
        for (int step = 1; goesOn && step <= 3; ++step)
        {
            mScreen->MoveTo(inKnob.mX, inKnob.mY - 10 * step);
            goesOn = await("HandleParameterMouseDrag", static_cast<std::size_t>(step));
        }
        mScreen->Button(kPrimaryButton, false);
        goesOn = goesOn && await("HandleParameterMouseUp", 1);
        const CHostAutomation& automation = inOpened.mInstance->Host().Automation();
        EXPECT_TRUE(goesOn && inOpened.Await([&] { return automation.PendingRequests() == 0; }));
    }

    CVirtualDisplay mDisplay;
    std::optional<CTestScreen> mScreen; // gone before the display
};

Lines Gestures(const CHostLog& inLog)
{
    Lines lines = inLog.Lines();
    std::erase_if(lines, [](const std::string& inLine)
                  { return !inLine.starts_with("HandleParameterMouse") && !inLine.starts_with("Post"); });
    return lines;
}

/** Down, then for each step touch, value, release and drag, then up, with nothing of any other parameter.
 * @return the last value; fails the test where it is anything else. */
double ExpectWholeGesture(const Lines& inLines, const std::string& inParameter,
                          const std::string& inModifiers)
{
    const std::string id = "(\"" + inParameter + "\"";
    const std::string mouse = id + ", " + inModifiers + ")";
    double last = -1.0;
    if (inLines.size() < 6 || inLines.size() % 4 != 2)
    {
        ADD_FAILURE() << "no whole gesture: " << testing::PrintToString(inLines);
        return last;
    }
    EXPECT_EQ(inLines.front(), "HandleParameterMouseDown" + mouse);
    for (std::size_t i = 1; i + 1 < inLines.size(); i += 4)
    {
        EXPECT_EQ(inLines[i], "PostTouchRequest" + id + ")");
        const std::string call = "PostSetValueRequest" + id + ", ";
        EXPECT_EQ(inLines[i + 1].substr(0, call.size()), call);
        const double value = std::atof(inLines[i + 1].substr(call.size()).c_str());
        EXPECT_GT(value, last) << "the pointer moves one way";
        last = value;
        EXPECT_EQ(inLines[i + 2], "PostReleaseRequest" + id + ")");
        EXPECT_EQ(inLines[i + 3], "HandleParameterMouseDrag" + mouse);
    }
    EXPECT_EQ(inLines.back(), "HandleParameterMouseUp" + mouse);
    return last;
}

/** What is made while this lives is not searched for leaks. */
class CLeakPause
{
public:
    CLeakPause()
    {
        if (__lsan_disable != nullptr)
            __lsan_disable();
    }
    CLeakPause(const CLeakPause&) = delete;
    CLeakPause& operator=(const CLeakPause&) = delete;
    ~CLeakPause()
    {
        if (__lsan_enable != nullptr)
            __lsan_enable();
    }
};

class Editors : public OnADisplay, public testing::WithParamInterface<SSubject>
{
protected:
    void SetUp() override
    {
        if (GetParam().mPlugin.empty())
            GTEST_SKIP() << "not installed";
        OnADisplay::SetUp();
        // The driver of Mesa that draws the real plug-ins' editors keeps two blocks each time. The example's
        // editor, and all of ours with it, is searched.
        if (GetParam().mPlugin != kSynthPlugin)
            mPause.emplace();
    }

private:
    std::optional<CLeakPause> mPause;
};

TEST_P(Editors, ADragArrivesAsAGestureWithTheValueBalanced)
{
    SLoaded loaded(GetParam().mPlugin, GetParam().mNeedsOptions);
    SOpened opened(loaded);
    const std::string parameter = GetParam().mParameter;
    const double before = opened.Value(parameter);
    Drag(opened, GetParam());
    const double told = ExpectWholeGesture(Gestures(loaded.mLog), parameter, "0x4");
    EXPECT_GT(told, before);
    EXPECT_NEAR(opened.Value(parameter), told, 1e-6);
    EXPECT_FALSE(opened.mInstance->Host().Automation().IsTouched(parameter));
}

TEST_P(Editors, TheInstanceGoesWithItsEditorOpen)
{
    SLoaded loaded(GetParam().mPlugin, GetParam().mNeedsOptions);
    const auto window = Expect(CHostWindow::Create("test"));
    const auto id = reinterpret_cast<CTestScreen::WindowID>(window->View());
    for (const bool parametersFirst : {false, true})
    {
        SCOPED_TRACE(parametersFirst);
        auto instance = Expect(CInstance::Create(*loaded.mModule, 48000.0));
        CHostViewContainer& container = instance->Host().ViewContainer();
        container.SetView(window->ViewType(), window->View());
        ASSERT_TRUE(instance->OpenGUI());
        ASSERT_EQ(instance->GUI()->SetViewContainer(&container), 0);
        ASSERT_EQ(mScreen->Children(id), 1);
        if (parametersFirst)
        {
            EXPECT_EQ(instance->Parameters().Uninitialize(), 0);
            AAX_Point size{};
            EXPECT_EQ(instance->GUI()->GetViewSize(&size), 0);
            EXPECT_EQ(instance->GUI()->TimerWakeup(), 0);
        }
        instance.reset();
        EXPECT_EQ(mScreen->Children(id), 0);
        EXPECT_EQ(loaded.mModule->LiveObjects(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Plugins, Editors, testing::Values(kSynth, kMVerb, kZamComp),
                         [](const testing::TestParamInfo<SSubject>& inInfo)
                         { return std::string(inInfo.param.mName); });

TEST_F(OnADisplay, KeysAndButtonsGoWithTheGesture)
{
    SLoaded loaded(kSynthPlugin, false);
    struct SRow
    {
        std::vector<std::string> mKeys;
        bool mSecondaryButton;
        const char* mBits;
    };
    for (const SRow& row : {SRow{{}, false, "0x4"},
                            {{"Shift_L"}, false, "0x5"},
                            {{"Super_L"}, false, "0x6"},
                            {{"Control_L"}, false, "0x14"},
                            {{"Alt_L"}, false, "0x4"},
                            {{"Shift_R", "Super_R", "Control_R"}, false, "0x17"},
                            {{}, true, "0x14"}})
    {
        SCOPED_TRACE(testing::PrintToString(row.mKeys) + " " + row.mBits);
        SOpened opened(loaded);
        for (const std::string& key : row.mKeys)
            mScreen->Key(key, true);
        if (row.mSecondaryButton)
            mScreen->Button(kSecondaryButton, true);
        Drag(opened, kSynth);
        for (const std::string& key : row.mKeys)
            mScreen->Key(key, false);
        if (row.mSecondaryButton)
            mScreen->Button(kSecondaryButton, false);
        (void)ExpectWholeGesture(Gestures(loaded.mLog), kSynth.mParameter, row.mBits);
    }
}

TEST_F(OnADisplay, ThePictureShowsTheEditorInTheSizeThatItReported)
{
    const CModuleBundle bundle(kPlainModule, kSynthPlugin);
    const std::string file = bundle.Path().parent_path() / "editor.png";
    const SToolRun run = RunTool({AAXHOST, "editor", bundle.Path(), "--seconds", "2", "--screenshot", file});
    ASSERT_EQ(run.mExit, 0) << run.mErrors;
    const auto picture = ReadPng(file);
    ASSERT_TRUE(picture) << picture.Problem().mSentence;
    std::ostringstream told;
    told << "The editor is " << picture->mWidth << " by " << picture->mHeight << "\n";
    EXPECT_NE(run.mOutput.find(told.str()), std::string::npos) << run.mOutput << told.str();
    std::set<std::uint32_t> colours;
    const std::vector<std::uint8_t>& pixels = picture->mPixels;
    for (std::size_t i = 0; i + 2 < pixels.size(); i += 3)
        colours.insert(static_cast<std::uint32_t>(pixels[i] << 16 | pixels[i + 1] << 8 | pixels[i + 2]));
    EXPECT_GT(colours.size(), 50U) << "blank, or next to it";
}

TEST_F(OnADisplay, ASizeThatTheEditorAsksForIsTheWindowsUnlessItIsRefused)
{
    SLoaded loaded(kSynthPlugin, false);
    const auto instance = Expect(CInstance::Create(*loaded.mModule, 48000.0));
    for (const EResizing resizing : {EResizing::Followed, EResizing::Refused})
    {
        const bool isFollowed = resizing == EResizing::Followed;
        const auto window = Expect(CHostWindow::Create("test"));
        const auto view = Expect(CEditorView::Open(*instance, *window, resizing));
        const SViewSize before = view->Size();
        AAX_Point size{300.5F, 200.5F};
        EXPECT_EQ(instance->Host().ViewContainer().SetViewSize(size) == kAAX_Success, isFollowed);
        ASSERT_TRUE(view->Tick());
        const SViewSize wanted = isFollowed ? SViewSize{200, 300} : before;
        EXPECT_EQ(view->Size(), wanted);
        const SPicture picture = Expect(window->TakePicture());
        EXPECT_EQ((SViewSize{picture.mWidth, picture.mHeight}), wanted);
        EXPECT_EQ(size.mVertical, isFollowed ? 300.0F : 300.5F);
    }
}

TEST_F(OnADisplay, TheCommandTellsOfGesturesAndEndsWithItsWindow)
{
    const CModuleBundle bundle(kPlainModule, kSynthPlugin);
    auto run = std::async(std::launch::async,
                          [&] {
                              return RunTool({AAXHOST, "editor", bundle.Path(), "--seconds", "60"});
                          });
    const auto deadline = std::chrono::steady_clock::now() + kLimit;
    CTestScreen::WindowID window = 0;
    while ((window = mScreen->FindEditor("Example Synth")) == 0 &&
           std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
    ASSERT_NE(window, 0U);
    mScreen->Key("Shift_L", true);
    mScreen->MoveTo(kSynth.mX, kSynth.mY);
    mScreen->Button(kPrimaryButton, true);
    mScreen->MoveTo(kSynth.mX, kSynth.mY - 40);
    mScreen->Button(kPrimaryButton, false);
    mScreen->Close(window); // the key stays down: the tool may look only now
    const SToolRun ended = run.get();
    EXPECT_EQ(ended.mExit, 0) << ended.mErrors;
    EXPECT_EQ(ended.mOutput, "The editor is 888 by 174\n"
                             "00000 Cutoff           mouse down with shift\n"
                             "00000 Cutoff           touch\n"
                             "00000 Cutoff           set value 0.5447\n" // 0.5197 and a fortieth
                             "00000 Cutoff           release\n"
                             "00000 Cutoff           mouse drag with shift\n"
                             "00000 Cutoff           mouse up with shift\n");
}
} // namespace
