#pragma once
#include "Interfaces/VST2/AEffect.h"

/** The window of a plug-in, opened in its host's. Host's main thread only. */
class IEffectEditor
{
public:
    virtual ~IEffectEditor() = default;

    /** @return the size, the same whether it is open or not. */
    virtual ERect Rectangle() const noexcept = 0;
    /** @param inParent an X11 window number on Linux, an NSView on macOS. @return whether there is something
     * to see. */
    virtual bool Open(void* inParent) = 0;
    /** Ends what the person is doing in it; nothing where it is not open. */
    virtual void Close() noexcept = 0;
    /** Takes what the person did and shows what changed. */
    virtual void Idle() = 0;
};
