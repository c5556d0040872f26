#pragma once
#include <cstdint>

/** An instance's editor, as far as the instance knows it. On the host's main thread. */
class IAttachedEditor
{
public:
    /** The instance is going, and its plug-in with it. */
    virtual void ForgetInstance() noexcept = 0;
    /** The plug-in asks for another size, in pixels. @return whether it has it now. */
    virtual bool Resize(std::int32_t /*inWidth*/, std::int32_t /*inHeight*/) noexcept { return false; }

protected:
    ~IAttachedEditor() = default; // it is nobody's through this
};
