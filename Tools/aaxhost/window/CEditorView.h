#pragma once
#include "Tools/aaxhost/window/CHostWindow.h"
#include "Tools/support/COutcome.h"

#include <memory>

class CInstance;

/**
 * An instance's editor in a window: does for it what a host does while it is open.
 *
 * Threads: the main thread. The instance and the window must outlive it.
 */
class CEditorView
{
public:
    /** How often a host wakes an editor's timer. */
    static constexpr std::chrono::milliseconds kTimerInterval{30};

    /** Makes the instance's editor and gives it the window, which is shown in the size that the editor has.
     */
    static COutcome<std::unique_ptr<CEditorView>> Open(CInstance& inInstance, CHostWindow& inWindow);
    CEditorView(const CEditorView&) = delete;
    CEditorView& operator=(const CEditorView&) = delete;
    /** Takes the window away and ends the editor. */
    ~CEditorView();

    COutcome<SDone> GiveWindow();
    COutcome<SDone> TakeWindowAway();

    /** One beat of the timer, waiting for it first: idle time, the size, what the module asked for. */
    COutcome<SDone> Tick();
    /** What the editor said last; empty until it knows. */
    const SViewSize& Size() const noexcept { return mSize; }

private:
    CEditorView(CInstance& inInstance, CHostWindow& inWindow);
    COutcome<SDone> FollowSize();

    CInstance& mInstance;
    CHostWindow& mWindow;
    SViewSize mSize;
    std::chrono::steady_clock::time_point mNextBeat;
    bool mHasWindow = false;
};
