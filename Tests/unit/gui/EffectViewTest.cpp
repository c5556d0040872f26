#include "Extensions/GUI/AAX_CEffectGUI_VST.h"
#include "Extensions/GUI/VSTGUI_ContentView.h"
#include "Interfaces/ACF/ACFPtr.h"
#include "Tests/doubles/FailingMemory.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CInstanceHost.h"
#include "vstgui_stand_in.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
using Lines = std::vector<std::string>;

/** An editor that keeps the base's own frame. */
class CFrameEditor : public AAX_CEffectGUI_VST
{
public:
    using AAX_CEffectGUI_VST::GetContentView;

private:
    void CreateViewContents() override {}
};

class EffectView : public testing::Test
{
protected:
    EffectView()
        : mEditor(static_cast<AAX_IACFEffectGUI*>(new CFrameEditor)),
          mSelf(*static_cast<CFrameEditor*>(mEditor.Get()))
    {
        mHost.ViewContainer().SetView(1, &mView);
        EXPECT_EQ(mEditor->Initialize(mHost.Unknown()), kAAX_Success);
        (void)TakeVstguiCalls(); // of other tests
    }
    void Show() { EXPECT_EQ(mEditor->SetViewContainer(&mHost.ViewContainer()), kAAX_Success); }

    int mView = 0; // stands for the host's native view
    CHostLog mLog;
    CInstanceHost mHost{mLog};
    ACFPtr<AAX_IACFEffectGUI> mEditor; // made without a reference
    CFrameEditor& mSelf;
};

TEST_F(EffectView, OneFrameLivesAsLongAsTheView)
{
    Show();
    EXPECT_EQ(TakeVstguiCalls(), (Lines{"CFrame", "open", "setBackgroundColor 127 127 127"}));
    EXPECT_EQ(mEditor->SetViewContainer(nullptr), kAAX_Success);
    EXPECT_EQ(mEditor->SetViewContainer(nullptr), kAAX_Success);
    EXPECT_EQ(TakeVstguiCalls(), (Lines{"forget", "~CFrame"}));
    Show();
    (void)TakeVstguiCalls(); // as above
    mEditor.Reset();
    EXPECT_EQ(TakeVstguiCalls(), (Lines{"forget", "~CFrame"}));
}

TEST_F(EffectView, OnlyACocoaViewGetsAFrame)
{
    mHost.ViewContainer().SetView(2, &mView);
    Show();
    mHost.ViewContainer().SetView(1, nullptr);
    Show();
    EXPECT_EQ(TakeVstguiCalls(), Lines{});
}

TEST_F(EffectView, SizeAndDrawingAreTheFramesAndWithoutOneNothing)
{
    AAX_Point size{7.0F, 8.0F};
    AAX_Rect rect{1.0F, 2.0F, 30.0F, 40.0F}; // top, left, width, height
    EXPECT_EQ(mEditor->GetViewSize(&size), kAAX_Success);
    EXPECT_EQ(size.mVertical, 7.0F);
    EXPECT_EQ(mEditor->Draw(&rect), kAAX_Success);
    Show();
    mSelf.GetContentView()->setSize(640, 480);
    (void)TakeVstguiCalls(); // of showing
    EXPECT_EQ(mEditor->GetViewSize(&size), kAAX_Success);
    EXPECT_EQ(size.mHorizontal, 640.0F);
    EXPECT_EQ(size.mVertical, 480.0F);
    EXPECT_EQ(mEditor->Draw(&rect), kAAX_Success);
    EXPECT_EQ(mEditor->Draw(nullptr), kAAX_Success);
    EXPECT_EQ(TakeVstguiCalls(), (Lines{"drawRect 2 1 32 41"}));
    CFailingMemory memory(0);
    const AAX_Result drawn = mEditor->Draw(&rect);
    EXPECT_TRUE(memory.Stop());
    EXPECT_EQ(drawn, kAAX_ErrorNullObject);
}

TEST_F(EffectView, AnInvisibleFrameHasNoSize)
{
    Show();
    VSTGUI_ContentView& frame = *mSelf.GetContentView();
    frame.setSize(640, 480);
    VSTGUI::CRect rect(1, 1, 1, 1);
    EXPECT_TRUE(frame.getSize(rect));
    EXPECT_EQ(rect.right, 640);
    frame.setAlphaValue(0.0F);
    EXPECT_FALSE(frame.getSize(rect));
    frame.setAlphaValue(1.0F);
    frame.setVisible(false);
    EXPECT_FALSE(frame.getSize(&rect));
}

TEST_F(EffectView, DragsReachTheContainerWhereTheyHappen)
{
    Show();
    VSTGUI_ContentView& frame = *mSelf.GetContentView();
    (void)TakeVstguiCalls(); // of showing
    frame.onDragEnter(nullptr, {1, 2});
    frame.onDragMove(nullptr, {3, 4});
    frame.onDragLeave(nullptr, {5, 6});
    EXPECT_TRUE(frame.onDrop(nullptr, {10, 20}));
    EXPECT_EQ(TakeVstguiCalls(),
              (Lines{"onDragEnter 1 2", "onDragMove 3 4", "onDragLeave 5 6", "onDrop 10 20"}));
}
} // namespace
