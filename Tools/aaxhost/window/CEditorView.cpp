#include "Tools/aaxhost/window/CEditorView.h"

#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/aaxhost/player/CInstance.h"

#include <algorithm>
#include <fmt/format.h>

namespace
{
SViewSize ToPixels(const AAX_Point& inPoint)
{
    // Through a range that every window system holds, so that no broken number is converted.
    const auto extent = [](float inExtent)
    { return inExtent > 0.0F ? static_cast<int>(std::min(inExtent, 32767.0F)) : 0; };
    return {extent(inPoint.mHorizontal), extent(inPoint.mVertical)};
}

COutcome<SDone> Checked(const char* inCall, AAX_Result inResult)
{
    if (inResult != kAAX_Success)
        return SProblem{fmt::format("The editor fails: {} answered {}.", inCall, NameOfResult(inResult))};
    return SDone{};
}
} // namespace

CEditorView::CEditorView(CInstance& inInstance, CHostWindow& inWindow, EResizing inResizing)
    : mInstance(inInstance),
      mWindow(inWindow),
      mResizing(inResizing),
      mNextBeat(std::chrono::steady_clock::now())
{
    CHostViewContainer& container = mInstance.Host().ViewContainer();
    container.SetView(mWindow.ViewType(), mWindow.View());
    container.SetResizeHandler([this](AAX_Point& ioSize) { return TakeSize(ioSize); });
}

CEditorView::~CEditorView()
{
    if (mInstance.GUI() != nullptr && mHasWindow)
        (void)TakeWindowAway(); // the editor ends whatever it answers
    mInstance.CloseGUI();
    mInstance.Host().ViewContainer().SetResizeHandler({});
}

COutcome<std::unique_ptr<CEditorView>> CEditorView::Open(CInstance& inInstance, CHostWindow& inWindow,
                                                         EResizing inResizing)
{
    if (const auto made = inInstance.OpenGUI(); !made)
        return made.Problem();
    std::unique_ptr<CEditorView> view(new CEditorView(inInstance, inWindow, inResizing));
    if (const auto given = view->GiveWindow(); !given)
        return given.Problem();
    inWindow.Show();
    return view;
}

COutcome<SDone> CEditorView::GiveWindow()
{
    mHasWindow = true;
    const auto given =
        Checked("SetViewContainer", mInstance.GUI()->SetViewContainer(&mInstance.Host().ViewContainer()));
    return given ? AskForSize() : given;
}

COutcome<SDone> CEditorView::TakeWindowAway()
{
    mHasWindow = false;
    return Checked("SetViewContainer", mInstance.GUI()->SetViewContainer(nullptr));
}

COutcome<SDone> CEditorView::Tick()
{
    for (auto now = std::chrono::steady_clock::now(); now < mNextBeat; now = std::chrono::steady_clock::now())
        mWindow.HandleEvents(std::chrono::ceil<std::chrono::milliseconds>(mNextBeat - now));
    mWindow.HandleEvents(std::chrono::milliseconds::zero()); // also where the beats leave no time between
    mNextBeat = std::chrono::steady_clock::now() + kTimerInterval;

    if (auto idled = Checked("TimerWakeup", mInstance.GUI()->TimerWakeup()); !idled)
        return idled;
    return Checked("GenerateCoefficients", mInstance.RunCycle());
}

COutcome<SDone> CEditorView::AskForSize()
{
    AAX_Point point{};
    if (auto asked = Checked("GetViewSize", mInstance.GUI()->GetViewSize(&point)); !asked)
        return asked;
    const SViewSize size = ToPixels(point);
    if (size == mSize || (mResizing == EResizing::Refused && !mSize.IsEmpty()))
        return SDone{};
    mSize = size;
    if (!mSize.IsEmpty())
        mWindow.Resize(mSize);
    return SDone{};
}

AAX_Result CEditorView::TakeSize(AAX_Point& ioSize)
{
    const SViewSize size = ToPixels(ioSize);
    if (mResizing == EResizing::Refused || size.IsEmpty())
        return kAAX_ErrorUnsupported;
    mSize = size;
    mWindow.Resize(mSize);
    ioSize.mHorizontal = static_cast<float>(size.mWidth); // whole pixels
    ioSize.mVertical = static_cast<float>(size.mHeight);
    return kAAX_Success;
}
