#pragma once
#include "vstgui/lib/ccolor.h"
#include "vstgui/lib/cview.h"

namespace VSTGUI
{
class CViewContainer : public CView
{
public:
    using CView::CView;
    virtual void setBackgroundColor(const CColor& inColor);
    virtual bool onDrop(IDataPackage* inDrag, const CPoint& inWhere);
    virtual void onDragEnter(IDataPackage* inDrag, const CPoint& inWhere);
    virtual void onDragLeave(IDataPackage* inDrag, const CPoint& inWhere);
    virtual void onDragMove(IDataPackage* inDrag, const CPoint& inWhere);
};
} // namespace VSTGUI
