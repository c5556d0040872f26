#pragma once
#include "vstgui/lib/cframe.h"

class AAX_IEffectParameters;

/**
 * The frame of an effect drawn with VSTGUI, inside the host's native view. No module makes one.
 *
 * Host's GUI thread only. It has a reference count that starts at 1; `forget` ends it.
 */
class VSTGUI_ContentView : public VSTGUI::CFrame
{
public:
    /**
     * A frame without extent.
     * @param inParentView the host's native view.
     * @param inParameters for the views inside; not owned, may be null.
     */
    VSTGUI_ContentView(void* inParentView, AAX_IEffectParameters* inParameters,
                       VSTGUI::VSTGUIEditorInterface* inEditor);

    bool setPosition(VSTGUI::CCoord inX, VSTGUI::CCoord inY) override;
    bool setSize(VSTGUI::CCoord inWidth, VSTGUI::CCoord inHeight) override;
    bool getSize(VSTGUI::CRect& outRect) const override;
    /** @return false while the frame is not visible; the rectangle is untouched then. */
    bool getSize(VSTGUI::CRect* outRect) const override;

    void setParameters(AAX_IEffectParameters* inParameters) { mParameters = inParameters; }
    AAX_IEffectParameters* getParameters() const { return mParameters; }

    // Drag and drop reaches the views in the frame exactly as VSTGUI delivers it.
    bool onDrop(VSTGUI::IDataPackage* inDrag, const VSTGUI::CPoint& inWhere) override;
    void onDragEnter(VSTGUI::IDataPackage* inDrag, const VSTGUI::CPoint& inWhere) override;
    void onDragLeave(VSTGUI::IDataPackage* inDrag, const VSTGUI::CPoint& inWhere) override;
    void onDragMove(VSTGUI::IDataPackage* inDrag, const VSTGUI::CPoint& inWhere) override;

private:
    AAX_IEffectParameters* mParameters = nullptr;
};
