#pragma once
#include "Tests/integration/CTestScreen.h"
#include "Tests/integration/Expect.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"
#include "Tools/aaxhost/player/InstanceState.h"
#include "Tools/aaxhost/window/CEditorView.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

/** How long a test waits for anything. */
inline constexpr std::chrono::seconds kLimit{20};

/** A module with a plug-in in it. */
struct SLoaded
{
    SLoaded(const std::filesystem::path& inPlugin, bool inNeedsOptions)
        : mBundle(inNeedsOptions ? kOptionsModule : kPlainModule, inPlugin),
          mModule(Expect(CModule::Open(mBundle.Path(), mLog)))
    {
    }

    CModuleBundle mBundle;
    CHostLog mLog;
    std::unique_ptr<CModule> mModule;
};

/** An instance and its editor, open in a window. */
struct SOpened
{
    explicit SOpened(SLoaded& inLoaded)
        : mLoaded(inLoaded),
          mInstance(Expect(CInstance::Create(*inLoaded.mModule, 48000.0))),
          mWindow(Expect(CHostWindow::Create("test"))),
          mView(Expect(CEditorView::Open(*mInstance, *mWindow)))
    {
    }

    /** Lets the editor live until something has happened. @return false when it does not in time. */
    template <class Happened>
    bool Await(Happened inHappened)
    {
        const auto deadline = std::chrono::steady_clock::now() + kLimit;
        while (!inHappened())
            if (std::chrono::steady_clock::now() > deadline || !mView->Tick())
                return false;
        return true;
    }
    /** What the plug-in has: taking the state makes the instance ask it. */
    double Value(const std::string& inParameter)
    {
        EXPECT_TRUE(TakeState(*mLoaded.mModule, *mInstance));
        double value = -1.0;
        EXPECT_EQ(mInstance->Parameters().GetParameterNormalizedValue(inParameter.c_str(), &value), 0);
        return value;
    }
    CTestScreen::WindowID WindowID() const
    {
        return reinterpret_cast<CTestScreen::WindowID>(mWindow->View());
    }

    SLoaded& mLoaded;
    std::unique_ptr<CInstance> mInstance;
    std::unique_ptr<CHostWindow> mWindow;
    std::unique_ptr<CEditorView> mView;
};
