#pragma once
#include <memory>

class CKnobPanel;

/** A knob panel on the screen, in a host's window; gone with this object. Host's main thread only. */
class IPanelView
{
public:
    /**
     * @param inParent an X11 window number on Linux, an NSView on macOS.
     * @param ioPanel outlives the view.
     * @return null where nothing can be shown.
     */
    static std::unique_ptr<IPanelView> Create(void* inParent, CKnobPanel& ioPanel);
    virtual ~IPanelView() = default;

    /** Gives the panel what the pointer did and shows what changed. */
    virtual void Idle() = 0;
};
