#pragma once
#include "Libs/AAXLibrary/source/AAX_CEffectGUI.h"
#include "vstgui/lib/cframe.h"

class VSTGUI_ContentView;

/**
 * GUI base of an effect drawn with VSTGUI: makes a frame in the native view that the host hands over, reports
 * its size, redraws it on the host's request and releases it when the view is taken away.
 *
 * What no module calls: the frame and all that is about it. A module's editor replaces the operations that
 * make, size and draw one. They are for effects that are drawn with VSTGUI.
 *
 * Host's GUI thread only.
 */
class AAX_CEffectGUI_VST : public AAX_CEffectGUI, public VSTGUI::VSTGUIEditorInterface
{
public:
    AAX_CEffectGUI_VST();
    ~AAX_CEffectGUI_VST() override;

    /** Leaves `outSize` alone while there is no frame. */
    AAX_Result GetViewSize(AAX_Point* outSize) const override;
    /**
     * Has the frame draw this part of it; without a frame or a rectangle nothing. The frame gets no drawing
     * context, and VSTGUI 4.4 draws nothing then: its views draw when the window system asks them to.
     */
    AAX_Result Draw(AAX_Rect* inRect) override;

protected:
    /** A frame where the container is a Cocoa view, elsewhere nothing. */
    void CreateViewContainer() override;
    void DeleteViewContainer() override;
    /** Makes the frame, without extent: whoever fills it sizes it. It replaces an earlier one unreleased. */
    virtual void CreateEffectView(void* inParentView);

    VSTGUI_ContentView* GetContentView() const { return mFrame; }

private:
    void ReleaseFrame() noexcept;

    VSTGUI_ContentView* mFrame = nullptr; // holds one reference
};
