#include "Extensions/GUI/AAX_CEffectGUI_VST.h"

#include "Extensions/GUI/FrameGeometry.h"
#include "Extensions/GUI/VSTGUI_ContentView.h"
#include "Libs/AAXLibrary/source/AAX_CAutoreleasePool.h"
#include "Libs/AAXLibrary/source/AAX_ExceptionBarrier.h"

#include <utility>

namespace
{
/** The only kind of native view that a frame can be made in. */
constexpr std::int32_t kCocoaView = 1;
} // namespace

AAX_CEffectGUI_VST::AAX_CEffectGUI_VST() { frame = nullptr; }

AAX_CEffectGUI_VST::~AAX_CEffectGUI_VST() { ReleaseFrame(); }

AAX_Result AAX_CEffectGUI_VST::GetViewSize(AAX_Point* outSize) const
{
    if (mFrame != nullptr && outSize != nullptr)
        *outSize = ExtentOf(*mFrame);
    return kAAX_Success;
}

AAX_Result AAX_CEffectGUI_VST::Draw(AAX_Rect* inRect)
{
    return AAX_Contained(
        [&, this]
        {
            if (mFrame != nullptr && inRect != nullptr)
                mFrame->drawRect(nullptr, RectOf(*inRect));
            return kAAX_Success;
        });
}

void AAX_CEffectGUI_VST::CreateViewContainer()
{
    if (GetViewContainerType() == kCocoaView && GetViewContainerPtr() != nullptr)
        CreateEffectView(GetViewContainerPtr());
}

void AAX_CEffectGUI_VST::CreateEffectView(void* inParentView)
{
    mFrame =
        new VSTGUI_ContentView(inParentView, GetEffectParameters(), this); // its count starts at one: ours
    mFrame->setBackgroundColor(VSTGUI::kGreyCColor);
}

void AAX_CEffectGUI_VST::DeleteViewContainer() { ReleaseFrame(); }

void AAX_CEffectGUI_VST::ReleaseFrame() noexcept
{
    const AAX_CAutoreleasePool pool; // the frame's native views go at its end
    if (VSTGUI_ContentView* const released = std::exchange(mFrame, nullptr))
        released->forget();
}
