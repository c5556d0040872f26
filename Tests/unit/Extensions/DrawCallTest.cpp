#include "Extensions/GUI/AAX_CEffectGUI_VST.h"
#include "Interfaces/ACF/ACFPtr.h"
#include "Tests/doubles/FailingMemory.h"
#include "Tests/unit/Extensions/ParentView.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CInstanceHost.h"
#include "vstgui_stand_in.h"

#include <gtest/gtest.h>

namespace
{
class CEmptyEditor : public AAX_CEffectGUI_VST
{
    void CreateViewContents() override {}
};

// Without a context VSTGUI itself draws nothing; that it is asked can be seen with the stand-in only.
TEST(DrawCall, TheFrameGetsTheHostsRectangleAndRunningOutOfMemoryIsAnAnswer)
{
    CHostLog log;
    CInstanceHost host{log};
    host.ViewContainer().SetView(1, ParentView());
    const ACFPtr<AAX_IACFEffectGUI> editor(static_cast<AAX_IACFEffectGUI*>(new CEmptyEditor));
    EXPECT_EQ(editor->Initialize(host.Unknown()), kAAX_Success);
    AAX_Rect rect{1.0F, 2.0F, 30.0F, 40.0F}; // top, left, width, height
    EXPECT_EQ(editor->Draw(&rect), kAAX_Success);
    EXPECT_EQ(editor->SetViewContainer(&host.ViewContainer()), kAAX_Success);
    (void)TakeVstguiDrawCalls(); // of other tests
    EXPECT_EQ(editor->Draw(nullptr), kAAX_Success);
    EXPECT_TRUE(TakeVstguiDrawCalls().empty());
    EXPECT_EQ(editor->Draw(&rect), kAAX_Success);
    const std::vector<VSTGUI::CRect> drawn = TakeVstguiDrawCalls();
    ASSERT_EQ(drawn.size(), 1U);
    EXPECT_EQ(drawn[0].left, 2);
    EXPECT_EQ(drawn[0].top, 1);
    EXPECT_EQ(drawn[0].right, 32);
    EXPECT_EQ(drawn[0].bottom, 41);
    CFailingMemory memory(0);
    const AAX_Result answer = editor->Draw(&rect);
    EXPECT_TRUE(memory.Stop());
    EXPECT_EQ(answer, kAAX_ErrorNullObject);
}
} // namespace
