#include "Source/CAaxEditor.h"
#include "Source/plugins/CVst2Host.h"
#include "Source/plugins/MouseModifiers.h"
#include "Tests/unit/Source/AdapterTest.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace
{
class Editor : public AdapterTest
{
protected:
    /** An instance and its editor, initialised, without a view. */
    void StartEditor()
    {
        Script().mParameters = {0.25F, 0.5F};
        Script().mShape.flags |= effFlagsHasEditor;
        Script().mEditorSize = {0, 0, 300, 400};
        Start();
        MakeEditor();
    }
    void MakeEditor()
    {
        mEditor = ACFPtr<AAX_IACFEffectGUI>(static_cast<AAX_IACFEffectGUI*>(CAaxEditor::Create()));
        ASSERT_EQ(mEditor->Initialize(mHost.Unknown()), kAAX_Success);
        mHost.ViewContainer().SetView(1, &mView);
    }
    void Show() { EXPECT_EQ(mEditor->SetViewContainer(&mHost.ViewContainer()), kAAX_Success); }
    void Hide() { EXPECT_EQ(mEditor->SetViewContainer(nullptr), kAAX_Success); }
    AAX_Point Size()
    {
        AAX_Point size{-1.0F, -1.0F};
        EXPECT_EQ(mEditor->GetViewSize(&size), kAAX_Success);
        return size;
    }
    /** Begin, automate and end, as the plug-in's own editor does on a drag. */
    void Drag(std::int32_t inIndex)
    {
        Effect().CallHost(audioMasterBeginEdit, inIndex);
        Automate(inIndex, 0.75F);
        Effect().CallHost(audioMasterEndEdit, inIndex);
    }
    /** The log's lines of the three mouse calls and of touch and release. */
    Lines TakeGestures()
    {
        Lines lines = TakeHostCalls();
        std::erase_if(lines, [](const std::string& inLine)
                      { return !inLine.starts_with("HandleParameterMouse") && !inLine.starts_with("Post"); });
        return lines;
    }
    void TearDown() override { mEditor.Reset(); }

    int mView = 0; // stands for the host's native view
    ACFPtr<AAX_IACFEffectGUI> mEditor;
};

TEST_F(Editor, OpensInTheHostsViewIsIdledAndClosedAndOpensAgain)
{
    StartEditor();
    void* parent = nullptr;
    Script().mHooks[effEditOpen] = [&](ScriptedEffect&, const SDispatch& inCall)
    { parent = inCall.mPointer; };
    EXPECT_EQ(mEditor->TimerWakeup(), kAAX_Success); // nothing to idle yet
    CVst2Host other;
    other.SetActualAAXHost();
    Show();
    EXPECT_EQ(pVst2Host.load(), &Instance().Host());
    EXPECT_EQ(parent, &mView);
    EXPECT_EQ(mEditor->TimerWakeup(), kAAX_Success);
    Hide();
    EXPECT_EQ(mEditor->TimerWakeup(), kAAX_Success); // reaches the plug-in all the same
    Hide();
    EXPECT_EQ(TakePluginCalls(),
              (Lines{"effEditOpen", "effEditIdle", "effEditClose", "effEditIdle", "effEditClose"}));
    for (int i = 0; i < 100; ++i)
    {
        Show();
        Hide();
    }
    EXPECT_EQ(TakePluginCalls().size(), 200U);
}

TEST_F(Editor, SizeIsThePluginsOwnAndNeverNegative)
{
    StartEditor();
    Show();
    struct SRow
    {
        bool mGives;
        ERect mRect; // top, left, bottom, right
        float mHeight;
        float mWidth;
    };
    for (const SRow& row : {SRow{true, {0, 0, 300, 400}, 300.0F, 400.0F},
                            {true, {10, 20, 310, 420}, 300.0F, 400.0F},
                            {true, {0, 0, 0, 0}, 0.0F, 0.0F},
                            {true, {300, 400, 0, 0}, 0.0F, 0.0F},
                            {false, {0, 0, 300, 400}, 0.0F, 0.0F}})
    {
        Script().mEditorSize = row.mRect;
        Script().mGivesEditorSize = row.mGives;
        EXPECT_EQ(Size().mVertical, row.mHeight);
        EXPECT_EQ(Size().mHorizontal, row.mWidth);
    }
}

TEST_F(Editor, APluginWithoutAnEditorIsNotAskedForOne)
{
    Start();
    MakeEditor();
    Show();
    EXPECT_EQ(Size().mVertical, 0.0F);
    Hide();
    EXPECT_EQ(Script().TakeLog(), (Lines{"effEditClose"}));
}

TEST_F(Editor, WithoutAPluginThereIsNothingToShow)
{
    Script().mEntryReturnsNull = true;
    Start();
    MakeEditor();
    Show();
    EXPECT_EQ(Size().mHorizontal, 0.0F);
    AAX_Rect rect{0.0F, 0.0F, 10.0F, 10.0F};
    EXPECT_EQ(mEditor->Draw(&rect), kAAX_Success);
    EXPECT_EQ(mEditor->Draw(nullptr), kAAX_Success);
    EXPECT_EQ(mEditor->TimerWakeup(), kAAX_Success);
}

TEST_F(Editor, AGestureBecomesMouseCallsAndABalancedValue)
{
    StartEditor();
    Show();
    (void)TakeHostCalls(); // of showing
    Drag(1);
    char modifiers[16];
    std::snprintf(modifiers, sizeof(modifiers), "0x%lX", getMouseMods());
    const std::string arguments = "(\"00001\", " + std::string(modifiers) + ")";
    EXPECT_EQ(TakeGestures(),
              (Lines{"HandleParameterMouseDown" + arguments, "PostTouchRequest(\"00001\")",
                     "PostSetValueRequest(\"00001\", 0.75)", "PostReleaseRequest(\"00001\")",
                     "HandleParameterMouseDrag" + arguments, "HandleParameterMouseUp" + arguments}));
}

TEST_F(Editor, AGestureWithoutAViewContainerIsAnsweredUnsupported)
{
    StartEditor();
    auto* const editor = static_cast<CAaxEditor*>(mEditor.Get());
    EXPECT_EQ(editor->HandleParameterMouseDown(0, 0), kAAX_ErrorUnsupported);
    Show();
    EXPECT_EQ(editor->HandleParameterMouseDown(0, 0), kAAX_Success);
    Hide();
    EXPECT_EQ(editor->HandleParameterMouseDrag(0, 0), kAAX_ErrorUnsupported);
    EXPECT_EQ(editor->HandleParameterMouseUp(0, 0), kAAX_ErrorUnsupported);
    (void)TakeHostCalls(); // of all that
    Drag(0);
    EXPECT_EQ(mLog.Count("HandleParameterMouseDrag"), 0U);
    EXPECT_EQ(mLog.Count("PostSetValueRequest"), 1U); // the value is told all the same
}

TEST_F(Editor, EitherSideMayGoFirst)
{
    StartEditor();
    Show();
    mEditor.Reset(); // the plug-in's editor is still open
    Drag(0);
    MakeEditor();
    Show();
    ACFPtr<AAX_IACFEffectGUI> second = std::move(mEditor);
    MakeEditor();
    Show(); // beside the one before
    AAX_Point size{-1.0F, -1.0F};
    EXPECT_EQ(second->GetViewSize(&size), kAAX_Success);
    EXPECT_EQ(size.mVertical, 0.0F); // that one has let go of the plug-in
    Drag(0);
    EXPECT_EQ(second->Uninitialize(), kAAX_Success);
    EXPECT_EQ(mEditor->Uninitialize(), kAAX_Success);
    (void)Script().TakeLog(); // of all that
    Script().mHooks[effMainsChanged] = [this](ScriptedEffect&, const SDispatch&)
    { EXPECT_EQ(mEditor->TimerWakeup(), kAAX_Success); }; // reaches nobody any more
    Stop();                                               // the instance goes with its editor open
    EXPECT_EQ(Script().TakeLog(), (Lines{"effEditClose", "effMainsChanged 0", "effClose"}));
    EXPECT_EQ(Size().mVertical, 0.0F);
    EXPECT_EQ(mEditor->TimerWakeup(), kAAX_Success);
    Hide();
}

TEST_F(Editor, ACallOfAnotherThreadIsAwaitedBeforeWhatItReachesGoes)
{
    struct SRow
    {
        std::int32_t mOpcode;
        const char* mCall; // that the host is in then
        std::function<void()> mGo;
    };
    StartEditor();
    Show();
    for (const SRow& row : {SRow{audioMasterBeginEdit, "HandleParameterMouseDown", [&] { mEditor.Reset(); }},
                            SRow{audioMasterAutomate, "PostSetValueRequest",
                                 [&] { EXPECT_EQ(Instance().Uninitialize(), kAAX_Success); }}})
    {
        std::atomic<bool> isInside = false;
        std::atomic<bool> isGone = false;
        const auto stay = [&]
        {
            isInside.store(true);
            const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(200);
            while (!isGone.load() && std::chrono::steady_clock::now() < end)
                std::this_thread::yield();
            EXPECT_FALSE(isGone.load()) << row.mCall;
        };
        mLog.InsideCall(row.mCall, stay);
        std::jthread caller([&] { Effect().CallHost(row.mOpcode, 1); });
        while (!isInside.load())
            std::this_thread::yield();
        row.mGo();
        isGone.store(true);
    }
    mLog.InsideCall("", {});
}

TEST_F(Editor, ParametersAreReachedByIndex)
{
    StartEditor();
    auto* const editor = static_cast<CAaxEditor*>(mEditor.Get());
    EXPECT_EQ(editor->GetParameter(1), 0.5F);
    EXPECT_EQ(editor->GetParameter(7), 0.0F);
    editor->SetParameter(0, 0.75F);
    EXPECT_EQ(Effect().Parameters()[0], 0.75F);
    EXPECT_STREQ(editor->IxToId(7), "00007");
    EXPECT_STREQ(editor->IxToId(-3), "-0003");
    EXPECT_EQ(editor->Uninitialize(), kAAX_Success);
    EXPECT_EQ(editor->GetParameter(1), 0.0F); // nobody to ask
    editor->SetParameter(0, 0.0F);
    EXPECT_EQ(Effect().Parameters()[0], 0.75F);
}

TEST_F(Editor, AnExceptionOfThePluginEndsInTheEditor)
{
    StartEditor();
    for (const std::int32_t opcode : {effEditOpen, effEditGetRect, effEditIdle, effEditClose})
        Script().mFaults.insert(opcode);
    Show();
    AAX_Point size{};
    EXPECT_EQ(mEditor->GetViewSize(&size), kAAX_ErrorNullObject);
    EXPECT_EQ(mEditor->TimerWakeup(), kAAX_ErrorNullObject);
    Hide();
    Script().mFaults.clear();
}
} // namespace
