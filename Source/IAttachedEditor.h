#pragma once

/** An instance's editor, as far as the instance knows it. On the host's main thread. */
class IAttachedEditor
{
public:
    /** The instance is going, and its plug-in with it. */
    virtual void ForgetInstance() noexcept = 0;

protected:
    ~IAttachedEditor() = default; // it is nobody's through this
};
