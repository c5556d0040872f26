#pragma once
#include "Tools/support/COutcome.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

struct SPicture;

/** Pixels. */
struct SViewSize
{
    int mWidth = 0;
    int mHeight = 0;

    bool IsEmpty() const noexcept { return mWidth <= 0 || mHeight <= 0; }
    bool operator==(const SViewSize&) const = default;
};

/**
 * A window of the host for an editor to open in. It is gone with this object, and what a plug-in put into it
 * as well.
 *
 * From the first window on, an error that the window system reports for anything in the process is ignored
 * instead of ending it: plug-ins cause some.
 *
 * Threads: the main thread.
 */
class CHostWindow
{
public:
    /** Makes a window that is not shown yet; a problem where no window can be had. */
    static COutcome<std::unique_ptr<CHostWindow>> Create(const std::string& inTitle);
    CHostWindow() = default;
    CHostWindow(const CHostWindow&) = delete;
    CHostWindow& operator=(const CHostWindow&) = delete;
    virtual ~CHostWindow() = default;

    /** What an editor gets as its parent; not owned. */
    virtual void* View() const noexcept = 0;
    /** The kind of that view as the AAX interface counts it; 0 for one that it has no number for. */
    virtual std::int32_t ViewType() const noexcept = 0;

    virtual void Show() = 0;
    /** The person cannot change it. Sizes outside what the window system takes become the nearest it takes.
     */
    virtual void Resize(const SViewSize& inSize) = 0;
    virtual void MoveTo(int inLeft, int inTop) = 0;
    /** Takes what happened to the window, waiting this long at most for the first of it. */
    virtual void HandleEvents(std::chrono::milliseconds inLongest) = 0;
    /** Whether the person closed it; it stays as it is for its owner to end. */
    virtual bool IsClosed() const noexcept = 0;

    /** What the window shows, with what others put into it. It has to lie wholly on the screen. */
    virtual COutcome<SPicture> TakePicture() = 0;
};
