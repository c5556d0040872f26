#pragma once
#include "vstgui/lib/ccolor.h"
#include "vstgui/lib/cview.h"

#include <vector>

namespace VSTGUI
{
/** Owns the views in it, which all lie in its own coordinates, and tells one of them at a time of a drag. */
class CViewContainer : public CView
{
public:
    using CView::CView;
    ~CViewContainer() override;
    virtual bool addView(CView* inView); // takes over its first reference
    virtual void setBackgroundColor(const CColor& inColor) { mBackground = inColor; }
    virtual CColor getBackgroundColor() const { return mBackground; }
    bool onDrop(IDataPackage* inDrag, const CPoint& inWhere) override;
    void onDragEnter(IDataPackage* inDrag, const CPoint& inWhere) override;
    void onDragLeave(IDataPackage* inDrag, const CPoint& inWhere) override;
    void onDragMove(IDataPackage* inDrag, const CPoint& inWhere) override;

private:
    CPoint ToLocal(const CPoint& inWhere) const { return {inWhere.x - mSize.left, inWhere.y - mSize.top}; }
    /** The topmost visible one; null where there is none. */
    CView* FindViewAt(const CPoint& inLocal) const;

    std::vector<CView*> mViews; // one reference of each
    CView* mDragView = nullptr; // the one that was told of a drag last
    CColor mBackground;
};
} // namespace VSTGUI
