#include "Extensions/GUI/VSTGUI_ContentView.h"

VSTGUI_ContentView::VSTGUI_ContentView(void* inParentView, AAX_IEffectParameters* inParameters,
                                       VSTGUI::VSTGUIEditorInterface* inEditor)
    : VSTGUI::CFrame(VSTGUI::CRect(0, 0, 0, 0), inEditor), mParameters(inParameters)
{
    (void)VSTGUI::CFrame::open(inParentView); // a view that cannot be opened shows nothing
}

bool VSTGUI_ContentView::setPosition(VSTGUI::CCoord inX, VSTGUI::CCoord inY)
{
    return VSTGUI::CFrame::setPosition(inX, inY);
}

bool VSTGUI_ContentView::setSize(VSTGUI::CCoord inWidth, VSTGUI::CCoord inHeight)
{
    return VSTGUI::CFrame::setSize(inWidth, inHeight);
}

bool VSTGUI_ContentView::getSize(VSTGUI::CRect& outRect) const { return getSize(&outRect); }

bool VSTGUI_ContentView::getSize(VSTGUI::CRect* outRect) const
{
    return isVisible() && VSTGUI::CFrame::getSize(outRect);
}

bool VSTGUI_ContentView::onDrop(VSTGUI::IDataPackage* inDrag, const VSTGUI::CPoint& inWhere)
{
    return VSTGUI::CViewContainer::onDrop(inDrag, inWhere);
}

void VSTGUI_ContentView::onDragEnter(VSTGUI::IDataPackage* inDrag, const VSTGUI::CPoint& inWhere)
{
    VSTGUI::CViewContainer::onDragEnter(inDrag, inWhere);
}

void VSTGUI_ContentView::onDragLeave(VSTGUI::IDataPackage* inDrag, const VSTGUI::CPoint& inWhere)
{
    VSTGUI::CViewContainer::onDragLeave(inDrag, inWhere);
}

void VSTGUI_ContentView::onDragMove(VSTGUI::IDataPackage* inDrag, const VSTGUI::CPoint& inWhere)
{
    VSTGUI::CViewContainer::onDragMove(inDrag, inWhere);
}
