#include "Source/plugins/CVst2Plugin.h"

namespace
{
constexpr long kEditorValue = 40; // given with every opening; nothing reads it
} // namespace

bool CVst2Plugin::HasEditor() { return mEffect != nullptr && (mEffect->flags & effFlagsHasEditor) != 0; }

bool CVst2Plugin::OpenEditor(void* inParent)
{
    if (mEffect == nullptr)
        return false;
    mEditorOpen = true; // whatever the plug-in answers: not all answer 1
    return Dispatch(effEditOpen, 0, 0, inParent) != 0;
}

bool CVst2Plugin::OpenEditor(void* inParent, bool& outFlag, long& outValue, long& outX, long& outY,
                             long& outWidth, long& outHeight)
{
    outFlag = true;
    outValue = kEditorValue;
    if (mEffect == nullptr)
        return false;
    const bool opened = OpenEditor(inParent);
    const bool sized = RequestEditorSize(outX, outY, outWidth, outHeight);
    return opened && sized;
}

void CVst2Plugin::GetEditorSize(long& outX, long& outY, long& outWidth, long& outHeight)
{
    (void)RequestEditorSize(outX, outY, outWidth,
                            outHeight); // the rectangle counts, whatever the plug-in returned
}

bool CVst2Plugin::RequestEditorSize(long& outX, long& outY, long& outWidth, long& outHeight)
{
    ERect* rectangle = nullptr;
    const bool answered = mEffect != nullptr && Dispatch(effEditGetRect, 0, 0, &rectangle) != 0;
    const ERect size = rectangle != nullptr ? *rectangle : ERect{};
    outX = size.left;
    outY = size.top;
    outWidth = size.right - size.left;
    outHeight = size.bottom - size.top;
    return answered;
}

void CVst2Plugin::CloseEditor()
{
    mEditorOpen = false;
    if (mEffect != nullptr)
        (void)Dispatch(effEditClose); // closed either way
}

void CVst2Plugin::Idle()
{
    if (mEffect != nullptr)
        (void)Dispatch(effEditIdle); // the interface gives the result no meaning
}

void CVst2Plugin::EffectIdle()
{
    if (mEffect != nullptr && mIdleRequested.load(std::memory_order_acquire))
        (void)Dispatch(effIdle); // asked for once, it is sent for good
}

long CVst2Plugin::VendorSpecific(long& outHandled, long inIndex, long inValue, char* inPointer, float inOpt)
{
    outHandled = mEffect != nullptr ? 1 : 0;
    return mEffect != nullptr
               ? static_cast<long>(Dispatch(effVendorSpecific, static_cast<std::int32_t>(inIndex), inValue,
                                            inPointer, inOpt))
               : 0;
}
