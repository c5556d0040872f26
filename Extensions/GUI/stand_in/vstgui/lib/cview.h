#pragma once
#include "vstgui/lib/crect.h"

namespace VSTGUI
{
class IDataPackage;
class CDrawContext;

class CView : public CBaseObject
{
public:
    explicit CView(const CRect& inSize) : mSize(inSize) {}
    const CRect& getViewSize() const { return mSize; }
    bool isVisible() const { return mVisible && mAlpha > 0.0F; }
    virtual void setVisible(bool inVisible) { mVisible = inVisible; }
    virtual void setAlphaValue(float inAlpha) { mAlpha = inAlpha; }
    bool isAttached() const { return mAttached; }
    virtual bool onDrop(IDataPackage*, const CPoint&) { return false; }
    virtual void onDragEnter(IDataPackage*, const CPoint&) {}
    virtual void onDragLeave(IDataPackage*, const CPoint&) {}
    virtual void onDragMove(IDataPackage*, const CPoint&) {}

protected:
    CRect mSize;
    bool mAttached = false;

private:
    bool mVisible = true;
    float mAlpha = 1.0F;
};
} // namespace VSTGUI
