#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "Tools/aaxhost/window/CHostWindow.h"
#include "Tools/support/COutcome.h"

#include <memory>

class CInstance;

/** What a host does about an editor that asks for another size. */
enum class EResizing
{
    Followed,
    Refused // the window keeps the size that the editor had first
};

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
    static COutcome<std::unique_ptr<CEditorView>> Open(CInstance& inInstance, CHostWindow& inWindow,
                                                       EResizing inResizing = EResizing::Followed);
    CEditorView(const CEditorView&) = delete;
    CEditorView& operator=(const CEditorView&) = delete;
    /** Takes the window away and ends the editor. */
    ~CEditorView();

    COutcome<SDone> GiveWindow();
    COutcome<SDone> TakeWindowAway();

    /** One beat of the timer, waiting for it first: idle time, the size, what the module asked for. */
    COutcome<SDone> Tick();
    /** What the editor said or was given last, and what the window is; empty until the editor knows. */
    const SViewSize& Size() const noexcept { return mSize; }

private:
    CEditorView(CInstance& inInstance, CHostWindow& inWindow, EResizing inResizing);
    /** With a new window, as hosts do, and no more. */
    COutcome<SDone> AskForSize();
    /** What the editor asks of the container. */
    AAX_Result TakeSize(AAX_Point& ioSize);

    CInstance& mInstance;
    CHostWindow& mWindow;
    EResizing mResizing;
    SViewSize mSize;
    std::chrono::steady_clock::time_point mNextBeat;
    bool mHasWindow = false;
};
