#include "vstgui_stand_in.h"

#include "vstgui/lib/cframe.h"

#include <algorithm>
#include <utility>

namespace
{
// Written by every drawing; main thread only.
std::vector<VSTGUI::CRect> gDrawCalls;
} // namespace

std::vector<VSTGUI::CRect> TakeVstguiDrawCalls() { return std::exchange(gDrawCalls, {}); }

namespace VSTGUI
{
CViewContainer::~CViewContainer()
{
    for (CView* const view : mViews)
        view->forget();
}

bool CViewContainer::addView(CView* inView)
{
    mViews.push_back(inView);
    return true;
}

CView* CViewContainer::FindViewAt(const CPoint& inLocal) const
{
    const auto found = std::find_if(mViews.rbegin(), mViews.rend(),
                                    [&](const CView* view)
                                    {
                                        const CRect& area = view->getViewSize();
                                        return view->isVisible() && inLocal.x >= area.left &&
                                               inLocal.x < area.right && inLocal.y >= area.top &&
                                               inLocal.y < area.bottom;
                                    });
    return found == mViews.rend() ? nullptr : *found;
}

bool CViewContainer::onDrop(IDataPackage* inDrag, const CPoint& inWhere)
{
    const CPoint local = ToLocal(inWhere);
    CView* const view = FindViewAt(local);
    if (mDragView != nullptr && mDragView != view)
        mDragView->onDragLeave(inDrag, local);
    mDragView = nullptr;
    if (view == nullptr)
        return false;
    const bool taken = view->onDrop(inDrag, local);
    view->onDragLeave(inDrag, local);
    return taken;
}

void CViewContainer::onDragEnter(IDataPackage* inDrag, const CPoint& inWhere)
{
    onDragLeave(inDrag, inWhere);
    mDragView = FindViewAt(ToLocal(inWhere));
    if (mDragView != nullptr)
        mDragView->onDragEnter(inDrag, ToLocal(inWhere));
}

void CViewContainer::onDragLeave(IDataPackage* inDrag, const CPoint& inWhere)
{
    if (CView* const left = std::exchange(mDragView, nullptr))
        left->onDragLeave(inDrag, ToLocal(inWhere));
}

void CViewContainer::onDragMove(IDataPackage* inDrag, const CPoint& inWhere)
{
    if (FindViewAt(ToLocal(inWhere)) != mDragView)
        CViewContainer::onDragEnter(inDrag, inWhere);
    else if (mDragView != nullptr)
        mDragView->onDragMove(inDrag, ToLocal(inWhere));
}

bool CFrame::open(void* inSystemWindow, PlatformType)
{
    if (inSystemWindow == nullptr || mAttached)
        return false;
    mAttached = true;
    return true;
}

bool CFrame::setPosition(CCoord inX, CCoord inY)
{
    if (mAttached)
        mSize = CRect(CPoint(inX, inY), CPoint(mSize.right - mSize.left, mSize.bottom - mSize.top));
    return mAttached;
}

bool CFrame::setSize(CCoord inWidth, CCoord inHeight)
{
    if (inWidth == mSize.right - mSize.left && inHeight == mSize.bottom - mSize.top)
        return false;
    mSize = CRect(CPoint(mSize.left, mSize.top), CPoint(inWidth, inHeight));
    return true;
}

bool CFrame::getSize(CRect* outSize) const
{
    if (mAttached && outSize != nullptr)
        *outSize = mSize;
    return mAttached && outSize != nullptr;
}

bool CFrame::getSize(CRect& outSize) const { return CFrame::getSize(&outSize); }

void CFrame::drawRect(CDrawContext*, const CRect& inUpdate) { gDrawCalls.push_back(inUpdate); }
} // namespace VSTGUI
