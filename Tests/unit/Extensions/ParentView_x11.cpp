#include "Tests/unit/Extensions/ParentView.h"
#include "Tools/aaxhost/window/CHostWindow.h"
#include "Tools/aaxhost/window/CVirtualDisplay.h"

#include <gtest/gtest.h>

namespace
{
/** A window on an X server of its own. */
struct SScreen
{
    SScreen()
    {
        EXPECT_EQ(mDisplay.Start(), "");
        auto window = CHostWindow::Create("parent");
        if (window)
            mWindow = std::move(*window);
        else
            ADD_FAILURE() << window.Problem().mSentence;
    }
    CVirtualDisplay mDisplay;
    std::unique_ptr<CHostWindow> mWindow; // goes before its server
};
} // namespace

void* ParentView()
{
    static const SScreen screen;
    return screen.mWindow == nullptr ? nullptr : screen.mWindow->View();
}
