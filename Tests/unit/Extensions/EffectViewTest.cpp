#include "Extensions/GUI/AAX_CEffectGUI_VST.h"
#include "Extensions/GUI/VSTGUI_ContentView.h"
#include "Interfaces/ACF/ACFPtr.h"
#include "Tests/unit/Extensions/ParentView.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CInstanceHost.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
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

/** A view in the frame that notes what reaches it. */
class CWatchedView : public VSTGUI::CView
{
public:
    CWatchedView(const VSTGUI::CRect& inSize, Lines& outLines) : VSTGUI::CView(inSize), mLines(outLines) {}
    bool onDrop(VSTGUI::IDataPackage*, const VSTGUI::CPoint& inWhere) override
    {
        Note("drop", inWhere);
        return true;
    }
    void onDragEnter(VSTGUI::IDataPackage*, const VSTGUI::CPoint& inWhere) override
    {
        Note("enter", inWhere);
    }
    void onDragLeave(VSTGUI::IDataPackage*, const VSTGUI::CPoint& inWhere) override
    {
        Note("leave", inWhere);
    }
    void onDragMove(VSTGUI::IDataPackage*, const VSTGUI::CPoint& inWhere) override { Note("move", inWhere); }

private:
    ~CWatchedView() override { mLines.push_back("gone"); }
    void Note(const std::string& inName, const VSTGUI::CPoint& inWhere)
    {
        mLines.push_back(inName + " " + std::to_string(std::lround(inWhere.x)) + " " +
                         std::to_string(std::lround(inWhere.y)));
    }
    Lines& mLines;
};

class EffectView : public testing::Test
{
protected:
    EffectView()
        : mEditor(static_cast<AAX_IACFEffectGUI*>(new CFrameEditor)),
          mSelf(*static_cast<CFrameEditor*>(mEditor.Get()))
    {
        mHost.ViewContainer().SetView(1, ParentView());
        EXPECT_EQ(mEditor->Initialize(mHost.Unknown()), kAAX_Success);
    }
    /** Shows a frame of 640 by 480 with a view in it. */
    VSTGUI_ContentView& Show()
    {
        EXPECT_EQ(mEditor->SetViewContainer(&mHost.ViewContainer()), kAAX_Success);
        VSTGUI_ContentView& frame = *mSelf.GetContentView();
        EXPECT_TRUE(frame.setSize(640, 480));
        EXPECT_TRUE(frame.addView(new CWatchedView({10, 10, 50, 50}, mLines))); // which owns it
        return frame;
    }

    Lines mLines;
    CHostLog mLog;
    CInstanceHost mHost{mLog};
    ACFPtr<AAX_IACFEffectGUI> mEditor; // made without a reference
    CFrameEditor& mSelf;
};

TEST_F(EffectView, OneFrameLivesAsLongAsTheView)
{
    const VSTGUI_ContentView& frame = Show();
    EXPECT_TRUE(frame.isAttached());
    EXPECT_EQ(frame.getBackgroundColor().green, 127);
    EXPECT_EQ(mEditor->SetViewContainer(nullptr), kAAX_Success);
    EXPECT_EQ(mEditor->SetViewContainer(nullptr), kAAX_Success);
    EXPECT_EQ(std::exchange(mLines, {}), Lines{"gone"});
    Show();
    mEditor.Reset();
    EXPECT_EQ(mLines, Lines{"gone"});
}

TEST_F(EffectView, OnlyACocoaViewGetsAFrame)
{
    for (const auto& [type, view] : {std::pair{2, ParentView()}, std::pair{1, static_cast<void*>(nullptr)}})
    {
        mHost.ViewContainer().SetView(type, view);
        EXPECT_EQ(mEditor->SetViewContainer(&mHost.ViewContainer()), kAAX_Success);
        EXPECT_EQ(mSelf.GetContentView(), nullptr) << type;
    }
}

TEST_F(EffectView, SizeAndDrawingAreTheFramesAndWithoutOneNothing)
{
    AAX_Point size{7.0F, 8.0F};
    AAX_Rect rect{1.0F, 2.0F, 30.0F, 40.0F}; // top, left, width, height
    EXPECT_EQ(mEditor->GetViewSize(&size), kAAX_Success);
    EXPECT_EQ(size.mVertical, 7.0F);
    EXPECT_EQ(mEditor->Draw(&rect), kAAX_Success);
    Show();
    EXPECT_EQ(mEditor->GetViewSize(&size), kAAX_Success);
    EXPECT_EQ(size.mHorizontal, 640.0F);
    EXPECT_EQ(size.mVertical, 480.0F);
    EXPECT_EQ(mEditor->Draw(&rect), kAAX_Success);
    EXPECT_EQ(mEditor->Draw(nullptr), kAAX_Success);
}

TEST_F(EffectView, AnInvisibleFrameHasNoSize)
{
    VSTGUI_ContentView& frame = Show();
    VSTGUI::CRect rect(1, 1, 1, 1);
    EXPECT_TRUE(frame.getSize(rect));
    EXPECT_EQ(rect.right, 640);
    frame.setAlphaValue(0.0F);
    EXPECT_FALSE(frame.getSize(rect));
    frame.setAlphaValue(1.0F);
    frame.setVisible(false);
    EXPECT_FALSE(frame.getSize(&rect));
}

TEST_F(EffectView, DragsReachTheViewsWhereTheyHappen)
{
    VSTGUI_ContentView& frame = Show();
    EXPECT_TRUE(frame.setPosition(5, 5));
    frame.onDragEnter(nullptr, {16, 17});
    frame.onDragMove(nullptr, {18, 19});
    frame.onDragLeave(nullptr, {20, 21});
    EXPECT_TRUE(frame.onDrop(nullptr, {22, 23}));
    EXPECT_EQ(mLines, (Lines{"enter 11 12", "move 13 14", "leave 15 16", "drop 17 18", "leave 17 18"}));
    EXPECT_FALSE(frame.onDrop(nullptr, {100, 100}));
}
} // namespace
